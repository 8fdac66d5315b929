"""The commands of the start page in the archive, run in the unpacked folder: those for Linux by a shell, those for Windows
under Wine. The page's port must be free, so the test runs in its own network namespace."""

import fcntl
import html
import os
import pathlib
import re
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import unittest
import urllib.request

BUILD = pathlib.Path(os.environ["PAVONIX_PROGRAMS"])
WINDOWS = pathlib.Path(os.environ["PAVONIX_UNPACKED"], "windows")
OWN_NETWORKS = ["unshare", "--net"], ["unshare", "--map-root-user", "--net"]  # for root, also in a chroot; for others


def enter_own_network():
    """Restarts this program in a new network namespace."""
    if "PAVONIX_OWN_NETWORK" not in os.environ:
        allowed = [own for own in OWN_NETWORKS if subprocess.run([*own, "true"], check=False).returncode == 0]
        if not allowed:
            print("skipped: this system allows no network namespace, and the page's port may be in use")
            sys.exit(1 if "PAVONIX_SKIPS_FAIL" in os.environ else 77)
        os.environ["PAVONIX_OWN_NETWORK"] = "1"
        os.execvp("unshare", [*allowed[0], sys.executable, "-B", __file__])
    with socket.socket() as any_socket:
        fcntl.ioctl(any_socket, 0x8914, struct.pack("16sH14x", b"lo", 1))  # SIOCSIFFLAGS, IFF_UP


class StartPageTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name, "unpacked")
        shutil.copytree(WINDOWS, self.folder)
        prefix = pathlib.Path(folder.name, "usr")
        subprocess.run(["cmake", "--install", BUILD, "--prefix", prefix], check=True, stdout=subprocess.DEVNULL)
        self.environment = {**os.environ, "PATH": f"{prefix}/bin:{os.environ['PATH']}",
                            "PKG_CONFIG_PATH": f"{prefix}/lib/pkgconfig", "LD_LIBRARY_PATH": f"{prefix}/lib",
                            "WINEPREFIX": f"{BUILD}/tests/kit/wine", "WINEDEBUG": "-all", "LC_ALL": "C.UTF-8",
                            "WINEDLLOVERRIDES": "mscoree=;mshtml=;winebrowser.exe="}

    def run_command(self, *command):
        """The output is written to a file, because background processes would keep a pipe open."""
        with tempfile.TemporaryFile() as output:
            running = subprocess.Popen(command, cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL,
                                       stdout=output, stderr=subprocess.STDOUT, start_new_session=True)
            self.addCleanup(self.end_group, running.pid)
            code = running.wait(200)
            output.seek(0)
            self.assertEqual(code, 0, f"{command[-1]}\n{output.read().decode('utf-8', 'replace')}")

    @staticmethod
    def end_group(group):
        try:
            os.killpg(group, signal.SIGTERM)
        except ProcessLookupError:
            pass

    def run_section(self, heading):
        """Runs the commands below a heading; returns them."""
        page = (WINDOWS / "html/start.html").read_text()
        section = page.partition(f">{heading}</h2>")[2].partition("<h2")[0]
        blocks = [(language, html.unescape(text)) for language, text in
                  re.findall(r'<pre><code class="language-(\w+)">(.*?)</code></pre>', section, re.DOTALL)]
        for language, text in blocks:
            if language == "sh":
                self.run_command("bash", "-euc", text)
            else:
                for line in text.splitlines():
                    self.run_command(os.environ["WINE64"], "cmd", "/c", line)
        return [language for language, _ in blocks]

    def expect_files(self, **wanted):
        """Each file must equal the shop's reply to the query."""
        for name, query in wanted.items():
            with urllib.request.urlopen(f"http://127.0.0.1:8080/shop/{query}") as reply:
                self.assertEqual((self.folder / f"{name}.xml").read_bytes(), reply.read(), name)

    def test_linux(self):
        self.assertEqual(self.run_section("On Linux"), ["sh"])
        first = "list?type=1&category=0&sort=0&start=0&max=10"
        self.expect_files(page=first, list=first)

    def test_windows(self):
        self.addCleanup(self.run_command, os.environ["WINE64"], "taskkill", "/f", "/im", "pavonix-shop.exe")
        self.assertEqual(self.run_section("On Windows"), ["cmd", "cmd", "cmd", "sh", "cmd"])
        self.expect_files(goods="list?type=1&category=0&sort=0&start=0&max=10", good="good?type=1&id=7",
                          list="list?type=1&category=1&sort=4&start=0&max=10")
        self.run_command(f"{BUILD}/pavonix", "profile", "check", "my.profile")
        bought = subprocess.run([f"{BUILD}/pavonix-shop", "--db", "demo/shop.db", "purchases"], cwd=self.folder, check=True, text=True,
                                stdout=subprocess.PIPE).stdout
        self.assertEqual(re.findall(r"SAMPLE-1.*?\b([37])\b", bought), ["3", "7"], bought)


if __name__ == "__main__":
    enter_own_network()
    unittest.main()
