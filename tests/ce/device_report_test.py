"""PavonixTest.exe on emulated devices: working ones, incomplete images, wrong shops, bad input.

    device_report_test.py EMULATOR RUNNER DLL PLUGINS
"""

import concurrent.futures
import os
import pathlib
import re
import shutil
import socket
import subprocess
import sys
import tempfile
import threading
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "tools"))
from shop_fixture import ShopTest, run

EMULATOR, RUNNER, DLL, PLUGINS = sys.argv[1:5]
PROGRAM = str(pathlib.Path(DLL).with_name("PavonixTest.exe"))
SAMPLE = HERE.parents[1] / "packaging/sample/sample.profile"
KINDS = {"a": ["--imports=arm", "--search=rejects-trailing"],
         "b": ["--imports=thumb", "--search=accepts-trailing"],
         "c": ["--imports=thumb", "--ansi=932"]}
WAIT = 10  # seconds; the shop's late replies take six seconds


class Device:
    """A device whose folder \\test holds the program and the DLL."""

    def __init__(self, ini=None, profile=None):
        self.root = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        self.folder = pathlib.Path(self.root.name, "test")
        self.folder.mkdir()
        for file in DLL, PROGRAM:
            shutil.copy(file, self.folder)
        if ini is not None:
            (self.folder / "PavonixTest.ini").write_bytes(ini.encode())
        if profile is not None:
            (self.folder / "own.profile").write_text(profile)

    def run(self, *options, emulator=()):
        """Runs the program; returns the lines of its report and of its message box, and the marked lines."""
        command = [EMULATOR, *emulator, RUNNER, f"--root={self.root.name}", *options,
                   str(self.folder / "PavonixTest.exe")]
        done = subprocess.run(command, capture_output=True, text=True, timeout=500)
        assert done.returncode == 0, done.stderr
        files = sorted(path.name for path in pathlib.Path(self.root.name).rglob("*.txt"))
        assert files in (["PavonixTest.txt"], []), files
        report = [path.read_text() for path in pathlib.Path(self.root.name).rglob("*.txt")]
        lines = report[0].splitlines() if report else []
        assert not list(pathlib.Path(self.root.name).rglob("*.tmp")), "a folder was left behind"
        return lines, done.stdout.splitlines(), [line[3:] for line in lines if line.startswith("!! ")]


class Relay:
    """A wrong shop: forwards requests with changed bytes."""

    def __init__(self, port, old, new):
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        self.target, self.old, self.new = port, old, new
        threading.Thread(target=self.serve, daemon=True).start()

    def serve(self):
        while True:
            device = self.listener.accept()[0]
            threading.Thread(target=self.relay, args=(device,), daemon=True).start()

    def relay(self, device):
        with device, socket.create_connection(("127.0.0.1", self.target)) as shop:
            shop.sendall(device.recv(65536).replace(self.old, self.new))
            try:
                while data := shop.recv(65536):
                    device.sendall(data)
            except OSError:
                pass  # some faults reset the connection; here it is closed


class WithoutShop(unittest.TestCase):
    def test_every_kind_of_device(self):
        for kind, options in KINDS.items():
            with self.subTest(kind=kind):
                watched = ["-plugin", f"{PLUGINS}/libwatch_image.so"] if PLUGINS != "none" else []
                lines, box, marked = Device().run(*options, emulator=["-cpu", "arm926", *watched])
                self.assertEqual((marked, lines[-1], box), ([], "all as expected", [
                    "PavonixTest", "all as expected", "\\test\\PavonixTest.txt"]))
                report = "\n".join(lines)
                self.assertIn("loaded and unloaded 10 times", report)
                self.assertIn("token of 1472 bits: sent", report)
                self.assertIn("   a path of 259 characters: 200, the body", report)
                umlauts = "nothing there" if "--ansi=932" in options else "the body"
                self.assertIn("   a name with umlauts: 200, " + umlauts, report)
                for stack in re.findall(r"download (\d+), purchase (\d+) bytes", report):
                    self.assertTrue(all(3000 < int(size) < 8192 for size in stack), stack)

    def test_images_that_lack_one_thing(self):
        rows = {
            "fread": ["coredll.dll has no fread"],
            "_wfopen": ["coredll.dll has no _wfopen"],
            "memcpy": ["coredll.dll has no memcpy"],
            "setsockopt": ["ws2.dll has no setsockopt"],
            "CryptGenRandom": ["cryptographic provider: its functions are missing"],
            "provider": ["cryptographic provider: it cannot be acquired"],
            "1252": ["code page 1252: missing"],
            "utf-8": ["UTF-8: missing"],
            "accept": ["no server can be started on 127.0.0.1"],
            "MessageBoxW": [],
        }
        for missing, expected in rows.items():
            with self.subTest(missing=missing):
                lines, box, marked = Device().run(f"--without={missing}")
                self.assertEqual(marked, expected)
                self.assertEqual(lines[-1], "1 line is not as expected" if expected else "all as expected")
                self.assertEqual(box == [], missing == "MessageBoxW")
                self.assertEqual("   unloaded" in lines, "has no" not in "".join(expected))

    def test_a_dll_that_is_none(self):
        for content, expected in ((None, "PAVONIX.dll is not beside this program"),
                                  (b"MZ" + bytes(1000), "PAVONIX.dll is damaged, or not for ARM")):
            device = Device()
            (device.folder / "PAVONIX.dll").unlink()
            if content is not None:
                (device.folder / "PAVONIX.dll").write_bytes(content)
            self.assertEqual(device.run()[2], [expected])

    def test_a_medium_without_room(self):
        device = Device()
        lines, _, marked = device.run(f"--full={device.folder}")
        self.assertEqual(marked, ["the program's folder takes no report, error 112"])
        self.assertIn("   a file of the root: 200, the body", lines)
        _, box, _ = device.run(f"--full={device.root.name}")
        self.assertRegex(box[1], r"^\d+ lines are not as expected$")
        self.assertEqual(box[2], "The report could not be written in full.")

    def test_settings_that_are_wrong(self):
        closed = socket.create_server(("127.0.0.1", 0))
        silent = socket.create_server(("127.0.0.1", 0))
        port = closed.getsockname()[1]
        closed.close()
        wrong_line = "PavonixTest.ini, line %d: not host=, port=, profile= or wait= with a value that can be; " \
                     "save it as plain ASCII text"
        calls = {"list": "200 stored", "good": "200 stored", "buy": "200", "buy what there is not": "404 code 903"}
        rows = [
            ("", ["PavonixTest.ini: no host="]),
            ("host=x\nport=0\nport=70000\n\n# port\nhost\nname=1\nwait=\n", [wrong_line % i for i in (2, 3, 6, 7, 8)]),
            ("\xff\xfeh\0o\0s\0t\0=", [wrong_line % 1]),
            ("host=127.0.0.1\nport=" + "9" * 5000, [wrong_line % 2]),
            (f"host=127.0.0.1\nport={port}\n",
             [f"{call}: {'0' if call.startswith('buy') else '0 not whole'}; expected: {result}"
              for call, result in calls.items()]),
            (f"host=127.0.0.1\nport={silent.getsockname()[1]}\nwait=1\n",
             [f"{call}: waits; expected: {result}" for call, result in calls.items()]),
        ]
        for ini, expected in rows:
            with self.subTest(ini=ini[:60]):
                lines, _, marked = Device(ini).run()
                self.assertEqual(marked, expected)
                self.assertIn("   unloaded", lines)
        silent.close()


class WithShop(ShopTest):
    def setUp(self):
        super().setUp()
        self.register(pathlib.Path(f"{SAMPLE}.pub.xml").read_text(), 1000000, "SAMPLE-1", 1)
        threading.Thread(target=self.shop.stdout.read, daemon=True).start()  # or a full pipe would block it

    def stop_shop(self):
        self.shop.terminate()
        self.shop.wait(10)

    def test_shops(self):
        def tap(port, options, extra="", profile=None):
            return Device(f"host=127.0.0.1\r\nport={port}\r\nwait={WAIT}\r\n{extra}", profile).run(*options)

        wrong = Relay(self.port, b"/fault/short/", b"/fault/long/")
        without_keys = SAMPLE.read_text().partition("Public-Key")[0]
        with concurrent.futures.ThreadPoolExecutor() as pool:
            kinds = [pool.submit(tap, self.port, options) for options in KINDS.values()]
            relayed = pool.submit(tap, wrong.port, [])
            keyless = pool.submit(tap, self.port, [], "profile=\\test\\own.profile\r\n", without_keys)
        names = [line.split()[0] for line in run(f"{os.environ['PAVONIX_PROGRAMS']}/pavonix-shop", "faults")
                 .stdout.splitlines()[1:]]
        for future in kinds:
            lines, _, marked = future.result()
            self.assertEqual((marked, lines[-1]), ([], "all as expected"))
            tried = re.findall(r"^   (\S+), (?:list|sale|refusal): ", "\n".join(lines), re.M)
            self.assertEqual(sorted(tried), sorted(3 * names))
        self.assertIn("short, list: 200 longer; expected: 200 cut", relayed.result()[2])
        # The relay turns resets into closed connections, which the library reports alike.
        self.assertEqual(len(relayed.result()[2]), 1, relayed.result()[2])
        self.assertEqual(keyless.result()[2], ["buy: 403 code 905; expected: 200",
                                               "buy what there is not: 403 code 905; expected: 404 code 903"])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
