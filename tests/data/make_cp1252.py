#!/usr/bin/env python3
"""Writes cp1252.txt: each byte of Windows-1252 and its UTF-16 unit, in hex.

    python3 make_cp1252.py > cp1252.txt

The five bytes that the code page leaves undefined stand for the control
characters of the same value, which is how Windows converts them both ways.
"""
for byte in range(256):
    try:
        unit = ord(bytes([byte]).decode("cp1252"))
    except UnicodeDecodeError:
        unit = byte
    print(f"{byte:02x} {unit:04x}")
