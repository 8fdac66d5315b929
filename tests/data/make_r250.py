#!/usr/bin/env python3
"""Writes r250.txt: the output of an R250 generator for known seeds.

A second implementation to compare the library's with: it keeps the whole
sequence in a list instead of walking a table of 250 words.

    python3 make_r250.py > r250.txt

Lines: "seed" and 1000 bytes, or "rand" and the start of the linear
congruence whose 31-bit numbers replace the C library's rand; then requests
on that generator, "bytes" or "nonzero", with their count and the result.
"""
import random


def congruence(value):
    while True:
        value = (value * 1103515245 + 12345) % 2**31
        yield value


def words_from_rand(start):
    numbers = congruence(start)
    words = [0] * 250
    for i in reversed(range(250)):
        low, high, two = (next(numbers) for _ in range(3))
        words[i] = (low | high << 15) << 2 & 0xFFFFFFFF | two & 3
    return words


def sequence(words):
    words = list(words)
    for i in range(32):
        stair = 2 ** (31 - i)
        words[3 + 7 * i] = words[3 + 7 * i] % stair + stair
    while True:
        words.append(words[-250] ^ words[-147])
        yield words[-1].to_bytes(4, "little")


def request(kind, count, steps):
    result = b""
    while len(result) < count:
        word = next(steps)
        if kind == "bytes" or 0 not in word:
            result += word
    print(kind, count, result[:count].hex())


def case(header, words):
    print(header)
    steps = sequence(words)
    for kind, count in (("bytes", 20), ("bytes", 21), ("nonzero", 20), ("nonzero", 1),
                        ("bytes", 1), ("bytes", 1100), ("nonzero", 600), ("bytes", 4)):
        request(kind, count, steps)


def provider_case(seed):
    case("seed " + seed.hex(), [int.from_bytes(seed[i:i + 4], "little") for i in range(0, 1000, 4)])


provider_case(random.Random(250).randbytes(1000))
provider_case(bytes(1000))
provider_case(b"\xff" * 1000)
case("rand 1", words_from_rand(1))
