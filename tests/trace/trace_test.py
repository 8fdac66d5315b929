"""The trace of every flavour's tracing build: a caller of that flavour makes calls to scripted replies.

Usage: trace_test.py LIBRARY CALLER...
"""

import pathlib
import re
import socket
import subprocess
import sys
import tempfile
import unittest

from odd_server import OddServer

LIBRARY, *CALLER = sys.argv[1:]
SOURCE = pathlib.Path(__file__).resolve().parents[2]
PROFILE = (SOURCE / "tests/data/device.profile").read_text()
HEAD = b"HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n"
CLOCK_IS_OFF = (b"HTTP/1.1 403 No\r\nX-Error-Code: 906\r\nX-Error-Message: late\r\n"
                b"X-Server-Timestamp: 2026-1-1 0:0:0.000\r\nContent-Length: 0\r\n\r\n")

# A reply's pieces, which are sent apart, the result of a download, and lines of its trace.
DOWNLOADS = {
    "stored": ([HEAD + b"hello"], 200, ["received 43 bytes", "head of 38 bytes, Content-Length 5, 5 body bytes arrived",
                                        "Private-Key 736 characters", "engine:     Success.",
                                        "close the file: 5 bytes in all"]),
    "head apart": ([HEAD, b"hello"], 200, ["the head arrived without body bytes: the first 5 bytes of the file are zeros"]),
    "body apart": ([HEAD + b"he", b"llo"], 200, ["only 2 body bytes arrived with the head: bytes 3 to 5 of the file"]),
    "no length": ([b"HTTP/1.1 200 OK\r\n\r\n<a/>"], 200, ["no usable Content-Length: the file gets the 1005 bytes"]),
    "long body": ([HEAD.replace(b"5", b"5000") + b"x" * 5000], 200, ["bytes more in", "close the file: 5000 bytes"]),
    "refused": ([b"HTTP/1.1 404 Not Found\r\nX-Odd: \x1b[31m\\\xff\r\n\r\n"], 404, [r"X-Odd: \x1b[31m\\\xff\r\n"]),
    "nothing": ([b""], 0, ["no head: no-reply: "]),
    "tls": ([b"\x15\x03\x01\x00\x02\x02\x28"], 0, ["no head: tls: "]),
    "not http": ([b"\x15 telnet"], 0, ["no head: not-http: "]),
    "bare line feeds": ([b"HTTP/1.1 200 OK\n\r\nhello"], 0, ["no head: bare-line-feeds: "]),
    "head in pieces": ([b"HTTP/1.1 200 OK\r\nConte", b"nt-Length: 5\r\n\r\nhello"], 0, ["no head: head-in-pieces: "]),
    "long head": ([b"HTTP/1.1 200 OK\r\nX: " + b"x" * 2000], 0, ["no head: head-too-long: "]),
}


def wide(text):
    return "".join("%04x" % ord(character) for character in text) or '""'


class TraceTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.caller = subprocess.Popen([*CALLER, LIBRARY], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        cls.addClassCleanup(cls.caller.communicate, "quit\n", 60)
        assert cls.caller.stdout.readline() == "ready\n"

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        (self.folder / "profile").write_text(PROFILE)
        self.trace = self.folder / "profile.trace.txt"

    def path(self, name):
        """As the library takes it; on desktop Windows the root of this machine is drive Z."""
        drive = "Z:" if "wine" in CALLER[0] else ""
        return wide(drive + str(self.folder / name).replace("/", "\\"))

    def call(self, command):
        self.caller.stdin.write(command + "\n")
        self.caller.stdin.flush()
        answer = self.caller.stdout.readline()
        self.assertTrue(answer.startswith("result "), answer)
        return int(answer.split()[1]), self.trace.read_text()

    def listen(self, pieces):
        """Sends the pieces apart, each in a segment of its own."""
        paused = [part for piece in pieces for part in (0.3, piece)][1:]
        return OddServer(self, *paused).port

    def get(self, port, url="http://127.0.0.1/good"):
        return self.call(f"good {self.path('profile')} 0 0 1 7 {self.path('x.xml')} 1 {wide(url)} {port}")

    def buy(self, port):
        return self.call(f"buy {self.path('profile')} 0 0 1 7 0 {wide('http://127.0.0.1/buy')} {port}")

    def test_each_reply_is_explained(self):
        for name, (pieces, answer, lines) in DOWNLOADS.items():
            with self.subTest(name):
                self.trace.unlink(missing_ok=True)
                result, trace = self.get(self.listen(pieces))
                self.assertEqual(result, answer)
                for line in [*lines, f"returned {answer}\n"]:
                    self.assertIn(line, trace)
                self.assertRegex(trace, r"\A[\n\x20-\x7e]*\Z")

    def test_connections_that_fail(self):
        with socket.socket() as bound:  # bound, but not listening
            bound.bind(("127.0.0.1", 0))
            self.assertRegex(self.get(bound.getsockname()[1])[1], r"connect failed, system error (111|10061)\n")
        self.assertIn("resolve no.such.name.invalid: no such name", self.get(1, "http://no.such.name.invalid/x")[1])
        self.assertIn("nothing was sent: the URL", self.get(1, "https://127.0.0.1/x")[1])

    def test_a_purchase_is_traced_without_its_secrets(self):
        result, trace = self.buy(self.listen([CLOCK_IS_OFF]))
        self.assertEqual(result, 403)
        for line in ("User-Cert: (172 characters)\\r\\n", "engine:       OutputSize: 128", "exptmodOutput: (the token)",
                     "the record: error code 906, message:  late", "server timestamp:  2026-1-1 0:0:0.000"):
            self.assertIn(line, trace)
        self.assertIn("the record was not touched", self.buy(self.listen([HEAD + b"hello"]))[1])
        secrets = re.findall(r"<(P|Q|DP|DQ|InverseQ|D|Modulus)>([^<]{8,})<", PROFILE)
        self.assertGreaterEqual(len(secrets), 6)
        for name, value in secrets:
            for start in range(0, len(value) - 8, 4):
                self.assertNotIn(value[start:start + 8], trace, name)

    def test_the_file_is_restarted_at_a_megabyte(self):
        self.trace.write_text("x" * 1000001)
        self.assertLess(len(self.get(1)[1]), 10000)
        before = self.trace.stat().st_size
        self.get(1)
        self.assertGreater(self.trace.stat().st_size, before)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
