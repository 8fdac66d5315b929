"""A device that runs the command-line client."""

import json
import os

from shop_fixture import PROGRAMS, Key, ShopTest, run

KEY = Key()


class ClientTest(ShopTest):
    def setUp(self):
        super().setUp()
        self.profile = self.write("device.profile", self.profile_text())
        self.target = os.path.join(self.folder, "stored.xml")

    def profile_text(self, serial="PX-1", user=42):
        return (f"User-Agent: Test/1\nUser-Serial: {serial}\nUser-Id: {user}\n"
                f"Public-Key: {KEY.public_xml()}\nPrivate-Key: {KEY.private_xml()}\n")

    def register_device(self, balance):
        self.register(KEY.public_xml(), balance)

    def call(self, command, *arguments, url=None, port=None, profile=None):
        """Runs the client; returns its exit code and its output."""
        url = url or f"http://127.0.0.1/shop/{command}"
        done = run(f"{PROGRAMS}/pavonix", command, "--url", url, "--port", str(port or self.port),
                   "--profile", profile or self.profile, *arguments)
        return done.returncode, done.stdout + done.stderr

    def good(self, *arguments, out=None, **options):
        return self.call("good", "--type", "3", "--id", "5", "--out", out or self.target, *arguments, **options)

    def buy(self, *arguments, **options):
        return self.call("buy", "--type", "1", "--id", "7", *arguments, **options)

    def diagnosed(self, command, **options):
        """Returns the exit code and the JSON object of a good or a purchase."""
        code, output = getattr(self, command)("--json", *(["--force"] if command == "good" else []), **options)
        return code, json.loads(output)

    def read_target(self):
        with open(self.target, "rb") as file:
            return file.read()
