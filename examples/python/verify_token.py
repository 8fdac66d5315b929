#!/usr/bin/env python3
"""Verifies the header "User-Cert" of a purchase, as a shop server does, with the standard library alone.

Usage: verify_token.py PUBLIC-KEY.xml TOKEN [SECONDS]

Exits with 0 if the token was made with the private key of that public key, by a device whose clock is off by at most
SECONDS (300); with 1 if it was not made with that key; with 3 if the clock is off.
"""

import base64
import datetime
import hashlib
import re
import sys
import xml.etree.ElementTree


class NotGenuine(Exception):
    pass


def read_public_key(xml_text):
    """Returns modulus and public exponent of <RSAKeyValue>."""
    root = xml.etree.ElementTree.fromstring(xml_text)
    return [int.from_bytes(base64.b64decode(root.findtext(name)), "big") for name in ("Modulus", "Exponent")]


def mask(seed, length):
    """MGF1 with SHA-1 (RFC 8017, B.2.1)."""
    digests = [hashlib.sha1(seed + i.to_bytes(4, "big")).digest() for i in range(length // 20 + 1)]
    return b"".join(digests)[:length]


def xor(left, right):
    return bytes(a ^ b for a, b in zip(left, right))


def decode_oaep(block):
    """The message in an OAEP block with SHA-1 and an empty label (RFC 8017, 7.1.2, step 3)."""
    seed, data = block[1:21], block[21:]
    seed = xor(seed, mask(data, 20))
    data = xor(data, mask(seed, len(data)))
    label, rest = data[:20], data[20:].lstrip(b"\0")
    if block[0] != 0 or label != hashlib.sha1(b"").digest() or rest[:1] != b"\1":
        raise NotGenuine("a block does not decode")
    return rest[1:]


def open_token(token, modulus, exponent):
    """Returns the text that the device encrypted with its private key, and the blocks of the token as bytes.

    A server must remember each block, not the whole token, and refuse a token with a block that it has seen: the blocks
    of two used tokens of a short key could otherwise be combined into a third."""
    try:
        ciphertext = base64.b64decode(token, validate=True)
    except ValueError:
        raise NotGenuine("not base64") from None
    size = (modulus.bit_length() + 7) // 8
    if not ciphertext or len(ciphertext) % size != 0:
        raise NotGenuine("not whole blocks of the key's size")
    blocks = [ciphertext[start:start + size] for start in range(0, len(ciphertext), size)]
    text = b""
    for block in blocks:
        number = int.from_bytes(block, "big")
        if number >= modulus:
            raise NotGenuine("a block is not below the modulus")
        text += decode_oaep(pow(number, exponent, modulus).to_bytes(size, "big"))
    return text.decode("ascii", "replace"), blocks


def parse_time(text):
    """The device's local time, to the second: the last three digits, which may be negative, are not part of the time.
    Other numbers have no leading zeros."""
    number = "(0|[1-9][0-9]*)"
    match = re.fullmatch(rf"{number}-{number}-{number} {number}:{number}:{number}\.(?!-000)-?[0-9]{{3}}", text)
    try:
        return datetime.datetime(*map(int, match.groups()))
    except (AttributeError, ValueError, OverflowError):
        raise NotGenuine("the text is not a time") from None


def main(key_file, token, seconds="300"):
    with open(key_file, encoding="ascii") as file:
        modulus, exponent = read_public_key(file.read())
    try:
        text, _ = open_token(token, modulus, exponent)
        difference = parse_time(text) - datetime.datetime.now().replace(microsecond=0)
    except NotGenuine as reason:
        print(f"not genuine: {reason}")
        return 1
    print(text)
    if abs(difference.total_seconds()) > int(seconds):
        print("the clock is off: refuse with error code 906 and the server's own time")
        return 3
    return 0


if __name__ == "__main__":
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
