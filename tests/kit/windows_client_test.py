"""pavonix.exe from the archive, under Wine, with the sample shop and the archive's sample profile."""

import json
import os
import pathlib
import socket
import subprocess
import tempfile

from shop_fixture import PROGRAMS, ShopTest, run

WINDOWS = pathlib.Path(os.environ["PAVONIX_UNPACKED"], "windows")
PROFILE = WINDOWS / "profile/sample.profile"
VERSION = run(f"{PROGRAMS}/pavonix", "--version").stdout


class WindowsClientTest(ShopTest):
    def setUp(self):
        super().setUp()
        self.register(pathlib.Path(f"{PROFILE}.pub.xml").read_text(), 5000, "SAMPLE-1", 1)

    def pavonix(self, *words):
        """Returns the exit code and the output. It is written to a file, because Wine's services keep pipes open for seconds."""
        with tempfile.TemporaryFile() as output:
            done = subprocess.run([os.environ["WINE64"], WINDOWS / "x64/pavonix.exe", *map(str, words)], cwd=self.folder,
                                  stdout=output, stderr=subprocess.STDOUT, timeout=100,
                                  env={**os.environ, "LC_ALL": "C.UTF-8"})
            output.seek(0)
            return done.returncode, output.read().decode().replace("\r\n", "\n")

    def call(self, command, *words, port=None, url="http://127.0.0.1/shop/{}"):
        return self.pavonix(command, "--url", url, "--port", port or self.port,
                            "--profile", PROFILE, *words)

    def test_version_and_sample_profile(self):
        self.assertEqual(self.pavonix("--version"), (0, VERSION))
        code, text = self.pavonix("profile", "check", PROFILE)
        self.assertEqual(code, 0, text)
        self.assertIn("no problems; only pavonix for Linux", text)

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

    def test_causes_of_failures(self):
        with socket.create_server(("127.0.0.1", 0)) as silent:
            port = silent.getsockname()[1]
            code, text = self.call("good", "--type", 1, "--id", 7, "--out", "x.xml", "--timeout", 0.3, port=port)
            self.assertEqual(code, 9, text)
        code, text = self.call("good", "--type", 1, "--id", 7, "--out", "x.xml", port=port)
        self.assertEqual(code, 11, text)
        self.assertIn("refuse", text)
        self.assertIn(f"127.0.0.1:{port}", text)
        code, text = self.call("good", "--type", 1, "--id", 7, "--out", "Bücher.xml", "--trace")
        self.assertEqual((code, pathlib.Path(self.folder, "Bücher.xml").exists()), (0, True), text)
        self.assertIn("GET /shop/good", text)
        for fault in ("head-in-pieces", "head-without-end"):  # they differ in the bytes after the call's only reception
            code, text = self.call("good", "--type", 1, "--id", 7, "--out", "x.xml", "--force", "--json",
                                   url=f"http://127.0.0.1/fault/{fault}/shop/{{}}")
            self.assertEqual((code, json.loads(text)["cause"]), (3, fault), text)
        code, text = self.call("list", "--type", 1, "--out", "cut.xml", url="http://127.0.0.1/fault/short/shop/{}")
        self.assertEqual(code, 5, text)
