"""demo.cmd from the archive, under Wine, in a new folder: stores files and makes a purchase."""

import os
import pathlib
import shutil
import socket
import sqlite3
import subprocess
import tempfile
import unittest
import urllib.request
import xml.etree.ElementTree as ElementTree

from shop_fixture import PROGRAMS, run

WINDOWS = pathlib.Path(os.environ["PAVONIX_UNPACKED"], "windows")
WINE = {**os.environ, "LC_ALL": "C.UTF-8"}


def free_port():
    with socket.create_server(("127.0.0.1", 0)) as listener:
        return listener.getsockname()[1]


class DemoTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()), "with space")
        for name in ("demo.cmd", "x64/pavonix.exe", "x64/PAVONIX.dll", "x64/pavonix-shop.exe"):
            (self.folder / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(WINDOWS / name, self.folder / name)

    def wine(self, *words):
        """Returns exit code and output, through a file: Wine's services would hold a pipe open for seconds."""
        with tempfile.TemporaryFile() as output:
            done = subprocess.run([os.environ["WINE64"], *map(str, words)], cwd=self.folder, stdin=subprocess.DEVNULL,
                                  stdout=output, stderr=subprocess.STDOUT, timeout=200, env=WINE)
            output.seek(0)
            return done.returncode, output.read().decode(errors="replace").replace("\r\n", "\n")

    def test_demo(self):
        port = free_port()
        code, text = self.wine("cmd", "/c", "demo.cmd", port, "no-browser")
        self.addCleanup(self.wine, "taskkill", "/f", "/im", "pavonix-shop.exe")
        self.assertEqual(code, 0, text)
        demo = self.folder / "demo"
        self.assertEqual(len(ElementTree.parse(demo / "list.xml").getroot()), 3)
        self.assertEqual(ElementTree.parse(demo / "good.xml").findtext("title"), "Reversi 64")
        with urllib.request.urlopen(f"http://127.0.0.1:{port}/") as page:
            self.assertIn("POST /shop/buy", page.read().decode())
        # The Linux program reads the same database, and the key that Windows encoded.
        bought = run(f"{PROGRAMS}/pavonix-shop", "--db", str(demo / "shop.db"), "purchases").stdout
        self.assertIn("1\tDEMO-0001\t42\t1\t1\t299", bought)
        with sqlite3.connect(demo / "shop.db") as database:
            [(pem,)] = database.execute("SELECT public_key FROM device").fetchall()
        key = subprocess.run(["openssl", "rsa", "-pubin", "-noout", "-modulus"], input=pem.encode(), capture_output=True)
        self.assertIn(b"Modulus=", key.stdout, key.stderr)

    def test_what_windows_lacks(self):
        code, text = self.wine("x64/pavonix-shop.exe", "--db", "postgresql://h/n")
        self.assertEqual((code, "SQLite only" in text), (1, True), text)
