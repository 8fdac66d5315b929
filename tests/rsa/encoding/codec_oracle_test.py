"""Compares the codecs with Python's on random bytes and on odd texts.

usage: codec_oracle_test.py <codec_probe>
"""
import base64
import binascii
import quopri
import random
import re
import subprocess
import sys
import unittest
from urllib.parse import quote_from_bytes

PROBE = sys.argv.pop()
ALPHABET = b"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"


def probe(operation, inputs):
    """The probe's results for all inputs, in order."""
    lines = "".join(f"{operation} {data.hex()}\n" for data in inputs)
    run = subprocess.run([PROBE], input=lines, capture_output=True, text=True, check=True)
    results = [bytes.fromhex(line) for line in run.stdout.split("\n")[:-1]]
    assert len(results) == len(inputs)
    return results


def samples():
    """Random bytes of every length to 300, from alphabets that provoke each codec."""
    rng = random.Random(20111)
    for length in range(301):
        yield rng.randbytes(length)
        yield bytes(rng.choice(b"a =\t.") for _ in range(length))
        yield bytes(rng.choice(b"\r\n \tx\0") for _ in range(length))
        yield b"\r\n".join(rng.randbytes(20).replace(b"\n", b"z") for _ in range(length // 22))
    for size in (256, 2000, 10000):  # around and beyond the blocks the text is built of
        yield rng.randbytes(size)
    yield bytes(range(256))
    for length in range(60, 80):  # blanks and escapes on each side of a line's end
        yield b"x" * length + b" " + b"y" * 9
        yield b"x" * length + b" \r\n" + b"y"
        yield b"x" * length + b"\xff" + b"y" * 9


def uudecode(text):
    match = re.fullmatch(rb"begin 644 file\.dat\n(.*)`\nend\n", text, re.DOTALL)
    assert match, text
    lines = match[1].split(b"\n")
    assert lines.pop() == b""
    assert all(chr(line[0]) == "M" for line in lines[:-1])
    assert all(len(line) <= 61 and b" " not in line for line in lines)
    return b"".join(binascii.a2b_uu(line) for line in lines)


def unquote_printable(text):
    for line in text.split(b"\r\n"):
        assert re.fullmatch(rb"[\t -~]{0,76}", line) and not line.endswith((b" ", b"\t")), line
        assert re.fullmatch(rb"([^=]|=[0-9A-F]{2})*=?", line), line
    return quopri.decodestring(text)


def loose_decode(text):
    """What the base64 reader makes of any text: 6-bit steps in a 24-bit word, in
    which a foreign character between "+" and "z" counts as seven set bits."""
    text = re.split(rb"[=\0]", text)[0]
    values = [ALPHABET.index(c) if c in ALPHABET else 127 for c in text if 43 <= c <= 122]
    decoded = b""
    for start in range(0, len(values), 4):
        quantum = values[start:start + 4]
        word = 0
        for place, value in enumerate(quantum):
            word |= value << (18 - 6 * place)
        decoded += (word & 0xFFFFFF).to_bytes(3, "big")[:len(quantum) * 6 // 8]
    return decoded


class Codecs(unittest.TestCase):
    def test_encodings_decode_to_their_input(self):
        oracles = {
            "quoted-printable": unquote_printable,
            "uuencode": uudecode,
            "ansi": lambda text: text,
        }
        inputs = list(samples())
        for mode, decode in oracles.items():
            for data, text in zip(inputs, probe(mode, inputs)):
                with self.subTest(mode=mode, data=data):
                    self.assertEqual(decode(text), data)

    def test_one_form_only(self):
        inputs = list(samples())
        self.assertEqual(probe("base64", inputs), [base64.b64encode(data) for data in inputs])
        self.assertEqual(probe("hex", inputs), [data.hex().upper().encode() for data in inputs])
        self.assertEqual(probe("base32", inputs), [base64.b32encode(data) for data in inputs])
        self.assertEqual(probe("url", inputs), [quote_from_bytes(data, safe="").encode() for data in inputs])
        self.assertEqual(set(probe("html", inputs)), {b""})

    def test_base64_reader(self):
        rng = random.Random(5)
        clean = [base64.b64encode(data) for data in samples()]
        broken_lines = [base64.encodebytes(data).replace(b"\n", b" \t\r\n") for data in samples()]
        data = list(samples())
        for operation in ("decode", "decode-z"):
            self.assertEqual(probe(operation, clean), data)
            self.assertEqual(probe(operation, broken_lines), data)
        odd = [b"", b"T", b"TW", b"TWE", b"TWE=", b"TW=FuTWFu", b"=TWFu", b"T WFu\r\n", b"TW-u", b"TW_u", b"----",
               b"TWFu\0TWFu", b"\xffTW\x80Fu", b"TWFu!\"#$%&'()*{|}~", b"+", b"z", b"*T", b"T{", b"@@@@[\\]^_`,-.:;<>?"]
        for alphabet in (bytes(range(256)), bytes(range(1, 128)), ALPHABET + b"-_ \r\n\t", b"-_Az"):
            odd += [bytes(rng.choice(alphabet) for _ in range(length)) for length in range(301)]
        for operation in ("decode", "decode-z"):
            for text, decoded in zip(odd, probe(operation, odd)):
                with self.subTest(operation=operation, text=text):
                    self.assertEqual(decoded, loose_decode(text))


if __name__ == "__main__":
    unittest.main()
