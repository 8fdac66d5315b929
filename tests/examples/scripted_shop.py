"""Shared by the tests of the examples: a shop with scripted replies, and a way to run programs."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

from odd_server import OddServer

SOURCE = pathlib.Path(__file__).resolve().parents[2]
# the folder of the examples and the header: the source, or an unpacked kit
ORIGIN = pathlib.Path(os.environ.get("PAVONIX_ORIGIN", SOURCE))
PROGRAMS = pathlib.Path(os.environ["PAVONIX_PROGRAMS"])


def run(*arguments, **options):
    """Runs a program to its end; returns its exit code and its output, one line an element."""
    options = {"stderr": subprocess.STDOUT, **options}
    done = subprocess.run([str(argument) for argument in arguments], stdout=subprocess.PIPE, timeout=100, **options)
    return done.returncode, done.stdout.decode("utf-8", "replace").replace("\r\n", "\n").splitlines()


def reply(status, body, **headers):
    """Returns a reply; keywords are further headers, with "_" for "-"."""
    lines = [f"HTTP/1.1 {status}", f"Content-Length: {len(body)}"]
    lines += [f"{name.replace('_', '-')}: {value}" for name, value in headers.items()]
    return "\r\n".join(lines).encode("cp1252") + b"\r\n\r\n" + body


class ExampleTest(unittest.TestCase):
    """Gives each test a folder with a device profile in it, and a shop."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        (self.folder / "shop").mkdir()
        self.profile = self.folder / "shop" / "profile"
        shutil.copy(SOURCE / "tests/data/device.profile", self.profile)

    def start_shop(self, *replies):
        """Returns its port. It sends one reply per connection and keeps the requests in self.requests."""
        left = iter(replies)
        server = OddServer(self, lambda connection: connection.sendall(next(left)))
        self.requests = server.requests
        return server.port
