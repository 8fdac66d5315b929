"""The shop's database: a PostgreSQL URL, or the file of SQLite. Its tables are those of schema.sql."""

import sqlite3
import threading


class Kept(threading.local):
    """The connection of a thread."""

    connection = None


class Database:
    def __init__(self, place):
        self.kept = Kept()
        if place.startswith(("postgresql:", "postgres:")):
            import psycopg2  # needed by those who have a server

            self.open = lambda: psycopg2.connect(place, connect_timeout=5)
            self.mark, self.failures = "%s", psycopg2.Error
        else:
            self.open, self.mark, self.failures = lambda: open_file(place), "?", sqlite3.Error

    def query(self, sql, *values):
        """Answers the cursor."""
        if self.kept.connection is None:
            self.kept.connection = self.open()
        cursor = self.kept.connection.cursor()
        cursor.execute(sql.replace("?", self.mark), values)
        return cursor

    def run(self, work):
        """Answers work(query), done in one transaction.

        After a restart of the server each kept connection is broken, so work that fails over one is done again over a
        new one: nothing of it counts before the commit. A commit that fails is not repeated, for it may have counted.
        """
        kept = self.kept.connection is not None
        try:
            try:
                answer = work(self.query)
            except self.failures:
                if not kept:
                    raise
                self._drop()
                answer = work(self.query)
            self.kept.connection.commit()
            return answer
        except self.failures:
            self._drop()
            raise
        except Exception:
            if self.kept.connection is not None:
                self.kept.connection.rollback()
            raise

    def _drop(self):
        connection, self.kept.connection = self.kept.connection, None
        try:
            if connection is not None:
                connection.close()
        except self.failures:
            pass


def open_file(path):
    connection = sqlite3.connect(path, timeout=5, isolation_level="IMMEDIATE")
    connection.execute("PRAGMA synchronous = FULL")
    connection.execute("PRAGMA foreign_keys = ON")
    return connection
