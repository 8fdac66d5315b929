"""A running sample shop, devices for it, and tokens made without the library."""

import base64
import hashlib
import http.client
import os
import re
import secrets
import signal
import socket
import sqlite3
import subprocess
import tempfile
import time
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
PROGRAMS = os.environ.get("PAVONIX_PROGRAMS", os.path.join(HERE, "..", "..", "build", "linux"))


def run(*arguments, **options):
    """Runs a program to its end; returns its exit code, output and error output."""
    return subprocess.run(arguments, capture_output=True, text=True, timeout=20, **options)


class Key:
    """An RSA key pair made by openssl."""

    def __init__(self, bits=1024):
        pem = subprocess.check_output(["openssl", "genrsa", "-traditional", str(bits)], stderr=subprocess.DEVNULL)
        listing = subprocess.check_output(["openssl", "asn1parse"], input=pem, text=False).decode()
        integers = [int(digits, 16) for digits in re.findall(r"INTEGER +:([0-9A-F]+)", listing)]
        _, self.n, self.e, self.d, self.p, self.q, self.dp, self.dq, self.inverse_q = integers
        self.size = (self.n.bit_length() + 7) // 8
        self.public_pem = subprocess.check_output(["openssl", "rsa", "-pubout"], input=pem, stderr=subprocess.DEVNULL)

    @staticmethod
    def _element(name, number):
        octets = number.to_bytes((number.bit_length() + 7) // 8, "big")
        return f"<{name}>{base64.b64encode(octets).decode()}</{name}>"

    def public_xml(self):
        return f"<RSAKeyValue>{self._element('Modulus', self.n)}{self._element('Exponent', self.e)}</RSAKeyValue>"

    def private_xml(self, without=()):
        parts = {"Modulus": self.n, "Exponent": self.e, "P": self.p, "Q": self.q, "DP": self.dp, "DQ": self.dq,
                 "InverseQ": self.inverse_q}
        inside = "".join(self._element(name, part) for name, part in parts.items() if name not in without)
        return f"<RSAKeyValue>{inside}</RSAKeyValue>"

    def _private_block(self, message, digest):
        def mask(seed, count):
            octets = b"".join(digest(seed + i.to_bytes(4, "big")).digest() for i in range(count // 16 + 1))
            return int.from_bytes(octets[:count], "big")

        hash_size = digest().digest_size
        rest = self.size - hash_size - 1
        block = digest(b"").digest() + bytes(rest - hash_size - 1 - len(message)) + b"\x01" + message
        seed = secrets.token_bytes(hash_size)
        block = (int.from_bytes(block, "big") ^ mask(seed, rest)).to_bytes(rest, "big")
        seed = (int.from_bytes(seed, "big") ^ mask(block, hash_size)).to_bytes(hash_size, "big")
        encoded = int.from_bytes(b"\x00" + seed + block, "big")
        return pow(encoded, self.d, self.n).to_bytes(self.size, "big")

    def token(self, text, digest=hashlib.sha1):
        """The text in OAEP blocks, each raised to the private exponent, in base64."""
        room = self.size - 2 * digest().digest_size - 2
        pieces = [text[i:i + room].encode() for i in range(0, len(text), room)]
        return base64.b64encode(b"".join(self._private_block(piece, digest) for piece in pieces)).decode()


def time_text(offset=0, fraction="042"):
    """The time text of a device whose clock is off by so many seconds."""
    t = time.localtime(time.time() + offset)
    return f"{t.tm_year}-{t.tm_mon}-{t.tm_mday} {t.tm_hour}:{t.tm_min}:{t.tm_sec}.{fraction}"


class ShopTest(unittest.TestCase):
    """Gives each test a running shop with a database of its own, in self.folder."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.database_file = os.path.join(self.folder, "shop.db")
        self.start_shop()

    def start_shop(self, *arguments):
        program = os.path.join(PROGRAMS, "pavonix-shop")
        self.shop = subprocess.Popen([program, "--port", "0", "--db", self.database_file, *arguments],
                                     stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.stop_shop)
        first_line = self.shop.stdout.readline()
        self.port = int(re.search(r"listening on http://127\.0\.0\.1:(\d+)/", first_line)[1])

    def write(self, name, content):
        path = os.path.join(self.folder, name)
        with open(path, "wb") as file:
            file.write(content if isinstance(content, bytes) else content.encode())
        return path

    def register(self, public_key, balance, serial="PX-1", user=42):
        """Adds a device to the shop, or changes it; returns the finished process."""
        return run(f"{PROGRAMS}/pavonix-shop", "device", "add", "--db", self.database_file, "--serial", serial, "--user-id",
                   str(user), "--public-key", self.write("device.pub", public_key), "--balance", str(balance))

    def stop_shop(self):
        """Stops the shop; returns its output's lines."""
        if self.shop.poll() is None:
            self.shop.terminate()
        output = self.shop.stdout.read() if not self.shop.stdout.closed else ""
        self.shop.stdout.close()
        self.assertIn(self.shop.wait(10), (0, -signal.SIGKILL))
        return output.splitlines()

    def ask(self, method, target, headers=None, body=None):
        """Returns status, headers and body, the body as bytes."""
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=10)
        connection.request(method, target, body, headers or {})
        reply = connection.getresponse()
        answer = reply.status, reply.headers, reply.read()
        connection.close()
        return answer

    def connect(self):
        connection = socket.create_connection(("127.0.0.1", self.port), timeout=10)
        self.addCleanup(connection.close)
        return connection

    def query(self, sql, *values):
        database = sqlite3.connect(self.database_file)
        try:
            with database:
                return database.execute(sql, values).fetchall()
        finally:
            database.close()
