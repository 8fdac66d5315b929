"""Profiles made and checked by the client, compared with the library's requests."""

import os
import re
import stat
import unittest
from tempfile import TemporaryDirectory

from client_fixture import KEY
from odd_server import OddServer
from shop_fixture import PROGRAMS, Key, run

PUBLIC = KEY.public_xml()
PRIVATE = KEY.private_xml()


def profile_text(**changes):
    """Returns a valid profile; each keyword replaces a line's value, None removes the line."""
    values = {"User-Agent": "A/1", "User-Serial": "PX-1", "User-Id": "42", "Public-Key": PUBLIC,
              "Private-Key": PRIVATE} | {key.replace("_", "-"): value for key, value in changes.items()}
    return "".join(f"{key}: {value}\n" for key, value in values.items() if value is not None)


class ProfileTest(unittest.TestCase):
    def setUp(self):
        folder = TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.path = os.path.join(folder.name, "device.profile")

    def check(self, text):
        with open(self.path, "w", newline="", encoding="latin-1") as file:
            file.write(text)
        done = run(f"{PROGRAMS}/pavonix", "profile", "check", self.path)
        return done.returncode, done.stdout

    def sent(self):
        """Returns the user agent, serial and id that the library sends with this profile."""
        server = OddServer(self, b"HTTP/1.1 404 No\r\n\r\n")
        run(f"{PROGRAMS}/pavonix", "good", "--url", f"http://127.0.0.1:{server.port}/g", "--profile", self.path, "--type", "1",
            "--id", "1", "--out", os.path.join(self.folder, "x"))
        return tuple(re.search(f"\r\n{name}: (.*?)\r\n", server.requests[0])[1]
                     for name in ("User-Agent", "User-Serial", "User-ID"))

    def test_valid_profiles(self):
        longest = "x" * (1023 - len("User-Agent: "))
        table = [
            ("plain", profile_text(), ("A/1", "PX-1", "42")),
            ("a last line without line feed", profile_text() + "User-No: 7", ("A/1", "PX-1", "42")),
            ("the longest line", profile_text(User_Agent=longest), (longest, "PX-1", "42")),
            ("other lines", "\nname: me\n" + profile_text(), ("A/1", "PX-1", "42")),
            ("a key after other text", profile_text(User_Serial=None) + "X User-Serial: S\n", ("A/1", "S", "42")),
            ("a later key in a value", profile_text(User_Agent="User-Serial"), ("User-Serial", "PX-1", "42")),
        ]
        for name, text, identity in table:
            with self.subTest(name):
                self.assertEqual(self.check(text)[0], 0, self.check(text)[1])
                self.assertEqual(self.sent(), identity)

    def test_lines_with_problems(self):
        default_agent = ("Mozilla/4.0 (compatible; MSIE 6.0; Windows NT 5.1; SV1; .NET CLR 2.0.50727; InfoPath.2; "
                         ".NET CLR 3.0.4506.2152; .NET CLR 3.5.30729)")
        table = [
            ("too long", profile_text(User_Serial="x" * 1011), "line 2: it has 1024 characters", ("A/1", "", "0")),
            ("carriage returns", profile_text(Public_Key=PUBLIC + "\r"), "line 4: it ends in a carriage return", None),
            ("a carriage return in a number", profile_text(User_Id="42\r"), "line 3: it ends in",
             ("A/1", "PX-1", "42")),
            ("shadowed", profile_text(User_Serial="the User-Agent: X"),
             "line 2: it begins with User-Serial but is read as User-Agent", ("X", "", "42")),
            ("no separator", profile_text().replace("Serial: ", "Serial:"), "the whole line is its value",
             ("A/1", "User-Serial:PX-1", "42")),
            ("text before the separator", profile_text().replace("User-Id", "User-Identity"),
             "there is text between", ("A/1", "PX-1", "42")),
            ("no number", profile_text(User_Id="4x2"), "User-Id is not a whole number", ("A/1", "PX-1", "4")),
            ("given twice", profile_text() + "User-Serial: S2\n", "overrides the value of line 2", ("A/1", "S2", "42")),
            ("missing", profile_text(User_Agent=None), "User-Agent is missing or empty",
             (default_agent, "PX-1", "42")),
            ("a zero byte", profile_text(User_Serial="P\0X"), "line 2: it contains a zero byte", ("A/1", "P", "42")),
            ("empty", "", "User-Serial is missing or empty", (default_agent, "", "0")),
        ]
        for name, text, words, identity in table:
            with self.subTest(name):
                code, output = self.check(text)
                self.assertEqual((code, words in output), (7, True), output)
                if identity:
                    self.assertEqual(self.sent(), identity)

    def test_keys_with_problems(self):
        table = [
            ("no XML", dict(Public_Key="secret"), ["Public-Key does not import", "No modulus"]),
            ("broken part", dict(Private_Key=PRIVATE.replace("<Q>", "<Q>*</Q><Q>")), ["Private-Key", "Invalid Q"]),
            ("public in both", dict(Private_Key=PUBLIC), ["no token can be made", "Private key required, but not provided"]),
            ("private in both", dict(Public_Key=PRIVATE), ["cannot be registered", "this is a private key"]),
            ("no pair", dict(Public_Key=Key().public_xml()), ["they are not a pair"]),
            ("no InverseQ", dict(Private_Key=KEY.private_xml(without=["InverseQ"])), ["cannot be opened with Public"]),
        ]
        odd = Key(1023)
        odd_keys = dict(Public_Key=odd.public_xml(), Private_Key=odd.private_xml())
        table.append(("1023 bits", odd_keys, ["1023 bits, which is not a multiple of 8"]))
        for without in (["DP"], ["DQ"], ["DP", "DQ"]):
            table.append((f"no {without}", dict(Private_Key=KEY.private_xml(without=without)),
                          ["cannot be opened with Public-Key", "\nproblem: Private-Key is compromised"]))
        for name, changes, words in table:
            with self.subTest(name):
                code, output = self.check(profile_text(**changes))
                self.assertEqual((code, [word for word in words if word not in output]), (7, []), output)
                self.assertEqual("is compromised" in output, name.startswith("no ['"))
                self.assertNotIn(PRIVATE[PRIVATE.index("<P>"):][:60], output)

    def new(self, *arguments):
        done = run(f"{PROGRAMS}/pavonix", "profile", "new", "--out", self.path, "--user-id", "-7",
                   *(() if "--serial" in arguments else ("--serial", "PX-9")), *arguments)
        return done.returncode, done.stdout + done.stderr

    def test_new_profiles(self):
        os.umask(0)
        self.addCleanup(os.umask, 0o022)
        self.assertEqual(self.new()[0], 0)
        self.assertEqual(stat.S_IMODE(os.stat(self.path).st_mode), 0o600)
        with open(self.path) as profile, open(self.path + ".pub.xml") as public_key:
            text = profile.read()
            self.assertIn("Public-Key: " + public_key.read(), text)
        self.assertEqual((text.count("\n"), "<D>" in text, "\r" in text), (6, True, False))
        self.assertEqual(run(f"{PROGRAMS}/pavonix", "profile", "check", self.path).returncode, 0)
        self.assertEqual(self.sent(), ("Pavonix/1.0", "PX-9", "-7"))

        self.assertEqual(run(f"{PROGRAMS}/pavonix", "profile", "check", self.folder).returncode, 6)
        self.assertEqual(self.new()[0], 6)
        with open(self.path) as profile:
            self.assertEqual(profile.read(), text)
        code, words = self.new("--force", "--bits", "1488")
        self.assertEqual((code, "written without D" in words), (0, True))
        self.assertEqual(run(f"{PROGRAMS}/pavonix", "profile", "check", self.path).returncode, 0)

    def test_refused_new_profiles(self):
        table = [(["--bits", "2048"], "holds at most 1023"), (["--bits", "1023"], "multiple of 8"),
                 (["--bits", "256"], "--bits"), (["--user-agent", "a\nUser-Id: 1"], "misread"),
                 (["--serial", "A\nB"], "visible ASCII"), (["--serial", "A B"], "visible ASCII"),
                 (["--user-agent", "a\nb"], "must not contain a line feed"), (["--user-agent", "a\r"], "carriage return"), (["--user-agent", "x" * 1012], "1024 characters")]
        for arguments, words in table:
            with self.subTest(arguments=arguments[1][:20]):
                code, output = self.new(*arguments)
                self.assertEqual((code, words in output, os.listdir(self.folder)), (2, True, []), output)
