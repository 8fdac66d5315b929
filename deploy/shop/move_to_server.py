#!/usr/bin/env python3
"""Moves a shop that has outgrown SQLite: makes the tables in an empty PostgreSQL database and copies every row.

Usage: move_to_server.py SHOP.db postgresql://...
"""

import sqlite3
import sys
from pathlib import Path

import psycopg2
from psycopg2.extras import execute_values

TABLES = ("type", "category", "good", "device", "purchase", "token")  # each after those it refers to


def move(file, url):
    source = sqlite3.connect(f"file:{file}?mode=ro", uri=True)
    with psycopg2.connect(url) as connection, connection.cursor() as cursor:
        cursor.execute(Path(__file__).with_name("schema.sql").read_text())
        for table in TABLES:
            rows = source.execute(f"SELECT * FROM {table}")
            names = ", ".join(column[0] for column in rows.description)
            execute_values(cursor, f"INSERT INTO {table} ({names}) VALUES %s", rows)
        cursor.execute("SELECT setval(pg_get_serial_sequence('purchase', 'number'), max(number)) FROM purchase")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    move(*sys.argv[1:])
