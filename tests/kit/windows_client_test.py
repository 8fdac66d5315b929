"""pavonix.exe out of the archive, under Wine, against the sample shop with the archive's sample profile."""

import json
import os
import pathlib
import socket
import subprocess
import tempfile
import unittest

from shop_fixture import PROGRAMS, ShopTest, run

WINDOWS = pathlib.Path(os.environ["PAVONIX_UNPACKED"], "windows")
PROFILE = WINDOWS / "profile/sample.profile"
VERSION = run(f"{PROGRAMS}/pavonix", "--version").stdout


class WindowsClientTest(ShopTest):
    def setUp(self):
        super().setUp()
        self.register(pathlib.Path(f"{PROFILE}.pub.xml").read_text(), 5000, "SAMPLE-1", 1)

    def pavonix(self, *words):
        """Answers the exit code and all that it wrote. Into a file: Wine's services would hold a pipe open for seconds."""
        with tempfile.TemporaryFile() as output:
            done = subprocess.run([os.environ["WINE64"], WINDOWS / "x64/pavonix.exe", *map(str, words)], cwd=self.folder,
                                  stdout=output, stderr=subprocess.STDOUT, timeout=100,
                                  env={**os.environ, "LC_ALL": "C.UTF-8"})
            output.seek(0)
            return done.returncode, output.read().decode().replace("\r\n", "\n")

    def call(self, command, *words, port=None, url="http://127.0.0.1/shop/{}"):
        return self.pavonix(command, "--url", url, "--port", port or self.port,
                            "--profile", PROFILE, *words)

    def test_says_what_it_is(self):
        self.assertEqual(self.pavonix("--version"), (0, VERSION))
        code, text = self.pavonix("profile", "check", PROFILE)
        self.assertEqual(code, 0, text)
        self.assertIn("no problems; only pavonix for Linux", text)

    def test_makes_a_profile(self):
        code, text = self.pavonix("profile", "new", "--out", "my.profile", "--serial", "PX-1", "--user-id", 42)
        self.assertEqual(code, 0, text)
        checked = run(f"{PROGRAMS}/pavonix", "profile", "check", "my.profile", cwd=self.folder)
        self.assertEqual(checked.returncode, 0, checked.stdout)
        self.assertEqual(self.pavonix("profile", "new", "--out", "my.profile", "--serial", "1", "--user-id", 1)[0], 6)

    def test_examines_servers(self):
        for path, expected, words in (("", 0, "Downloads and refused purchases are compatible"), ("/fault/head-apart", 8, "head-alone")):
            code, text = self.pavonix("doctor", f"http://127.0.0.1:{self.port}{path}/shop/list", "--tries", 3,
                                      "--profile", PROFILE)
            self.assertEqual(code, expected, text)
            self.assertIn(words, text)
            self.assertIn("this system does not report packets", text)

    def test_watches_a_download(self):
        with subprocess.Popen([os.environ["WINE64"], WINDOWS / "x64/pavonix.exe", "watch", "--listen", "0", "--to",
                               f"127.0.0.1:{self.port}", "--exchanges", "1"], stdout=subprocess.PIPE, text=True) as watch:
            relay = watch.stdout.readline().split()[2]
            stored = run(f"{PROGRAMS}/pavonix", "good", "--type", "1", "--id", "7", "--url", "http://127.0.0.1/shop/good",
                         "--port", relay, "--profile", PROFILE, "--out", f"{self.folder}/good.xml")
            seen = watch.stdout.read()
        self.assertEqual((stored.returncode, watch.returncode), (0, 0), stored.stderr)
        self.assertIn("  > GET /shop/good?type=1&id=7 HTTP/1.1\\r\\n", seen)
        self.assertIn("no fault found", seen)

    def test_lists_stores_and_buys(self):
        for command, words, target in (("list", "type=1&category=0&sort=0&start=0&max=10", "Bücher.xml"),
                                       ("good", "type=1&id=7", "good.xml")):
            options = ["--type", 1] if command == "list" else ["--type", 1, "--id", 7]
            code, text = self.call(command, *options, "--out", target)
            self.assertEqual(code, 0, text)
            wanted = run("curl", "-s", f"http://127.0.0.1:{self.port}/shop/{command}?{words}").stdout
            self.assertEqual(pathlib.Path(self.folder, target).read_text(), wanted)
            self.assertEqual(self.call(command, *options, "--out", target)[0], 1)
        self.assertEqual(self.call("buy", "--type", 1, "--id", 7), (0, "bought (200): type 1, id 7\n"))
        code, text = self.call("buy", "--type", 1, "--id", 7, "--json")
        self.assertEqual((code, json.loads(text)["status"]), (4, 409))

    def test_says_why_it_failed(self):
        with socket.create_server(("127.0.0.1", 0)) as silent:
            port = silent.getsockname()[1]
            code, text = self.call("good", "--type", 1, "--id", 7, "--out", "x.xml", "--timeout", 0.3, port=port)
            self.assertEqual(code, 9, text)
        code, text = self.call("good", "--type", 1, "--id", 7, "--out", "x.xml", port=port)
        self.assertEqual(code, 11, text)
        self.assertIn("refuse", text)
        self.assertIn(f"127.0.0.1:{port}", text)
        code, text = self.call("good", "--type", 1, "--id", 7, "--out", "x.xml", "--trace")
        self.assertEqual(code, 0, text)
        self.assertIn("GET /shop/good", text)
        for fault in ("head-in-pieces", "head-without-end"):  # told apart by what arrives after the call's one reception
            code, text = self.call("good", "--type", 1, "--id", 7, "--out", "x.xml", "--force", "--json",
                                   url=f"http://127.0.0.1/fault/{fault}/shop/{{}}")
            self.assertEqual((code, json.loads(text)["cause"]), (3, fault), text)
        code, text = self.call("list", "--type", 1, "--out", "cut.xml", url="http://127.0.0.1/fault/short/shop/{}")
        self.assertEqual(code, 5, text)
