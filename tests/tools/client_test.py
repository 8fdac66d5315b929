"""The command-line client: what it says and how it ends, against the sample shop and against odd servers."""

import os
import unittest

from shop_fixture import PROGRAMS, Key, ShopTest, answer_once, run

KEY = Key()


class ClientTest(ShopTest):
    def setUp(self):
        super().setUp()
        self.profile = self.write("device.profile", self.profile_text())
        self.target = os.path.join(self.folder, "stored.xml")

    def profile_text(self, serial="PX-1", user=42):
        return (f"User-Agent: Test/1\nUser-Serial: {serial}\nUser-Id: {user}\n"
                f"Public-Key: {KEY.public_xml()}\nPrivate-Key: {KEY.private_xml()}\n")

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w", newline="") as file:
            file.write(text)
        return path

    def call(self, command, *arguments, url=None, port=None, profile=None):
        """Runs the client; answers its exit code and all that it wrote."""
        url = url or f"http://127.0.0.1/shop/{command}"
        done = run(f"{PROGRAMS}/pavonix", command, "--url", url, "--port", str(port or self.port),
                   "--profile", profile or self.profile, *arguments)
        return done.returncode, done.stdout + done.stderr

    def good(self, *arguments, out=None, **options):
        return self.call("good", "--type", "3", "--id", "5", "--out", out or self.target, *arguments, **options)

    def read_target(self):
        with open(self.target, "rb") as file:
            return file.read()

    def test_list_and_good_store_what_the_shop_answers(self):
        query = "--type 2 --category 2 --sort 3 --start 1 --max 2".split()
        code, words = self.call("list", "--out", self.target, *query)
        answered = self.ask("GET", "/shop/list?type=2&category=2&sort=3&start=1&max=2")[2]
        self.assertEqual((code, self.read_target()), (0, answered))
        self.assertIn(f"stored {len(answered)} bytes", words)
        self.assertIn('<goods type="2"', words)
        code, words = self.good("--force")
        self.assertEqual((code, self.read_target()), (0, self.ask("GET", "/shop/good?type=3&id=5")[2]))

    def test_a_stored_file_is_kept_without_force(self):
        self.write("stored.xml", "<old/>")
        code, words = self.good(port=1)
        self.assertEqual((code, self.read_target()), (1, b"<old/>"))
        self.assertIn("kept", words)

    def test_paths(self):
        beyond_ascii = os.path.join(self.folder, "Bücher für 5 €/x.xml")
        for path in (beyond_ascii, os.path.relpath(self.target)):
            code, words = self.good(out=path)
            self.assertEqual((code, os.path.isfile(path)), (0, True), words)
        for name in ("one/two/x.xml", "", "книги.xml"):
            code, words = self.good("--force", out=os.path.join(self.folder, name))
            self.assertEqual((code, "nothing was stored" in words), (5, True))
        self.assertEqual(self.good(out=os.path.join(self.folder, "*.xml"))[0], 2)

    def test_replies_that_bring_no_document(self):
        head = b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\n\r\n"
        table = [
            ("cut short", head % 100 + b"<good>", 5, "not a whole XML document"),
            ("no XML", head % 5 + b"hello", 5, "not a whole XML document"),
            ("not modified", b"HTTP/1.1 304 Not Modified\r\n\r\n", 4, "status 304"),
            ("refused", b"HTTP/1.1 404 Not Found\r\n\r\n", 4, "the server refuses"),
            ("failed", b"HTTP/1.1 503 Down\r\n\r\n", 4, "the server failed"),
            ("no words", b"", 3, "no reply"),
        ]
        for name, reply, expected, words in table:
            with self.subTest(name):
                code, output = self.good("--force", port=answer_once(self, reply)[0])
                self.assertEqual((code, words in output), (expected, True), output)
        self.stop_shop()
        self.assertEqual(self.good("--force")[0], 3)
        self.assertEqual(self.good("--force", url="https://127.0.0.1/x")[0], 3)

    def test_terminal_is_safe_from_the_server(self):
        body = "<a>\x1b[2Jäöü€</a>".encode() + "ä".encode() * 200
        port, _ = answer_once(self, b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\n\r\n%s" % (len(body), body))
        code, words = self.good(port=port)
        self.assertEqual((code, "\x1b" in words, "?[2Jäöü€" in words), (5, False, True))

    def test_request(self):
        """The port comes from --port, else from the URL; the identity from the profile."""
        reply = b"HTTP/1.1 404 Not Found\r\n\r\n"
        port, request = answer_once(self, reply)
        done = run(f"{PROGRAMS}/pavonix", "good", "--url", f"http://127.0.0.1:{port}/g", "--profile", self.profile,
                   "--type", "-1", "--id", "2147483647", "--out", self.target)
        self.assertEqual(done.returncode, 4, done.stderr)
        self.assertTrue(request[0].startswith(f"GET /g?type=-1&id=2147483647 HTTP/1.1\r\nHost: 127.0.0.1:{port}\r\n"))
        self.assertIn("\r\nUser-Agent: Test/1\r\n", request[0])
        self.assertIn("\r\nUser-Serial: PX-1\r\nUser-ID: 42\r\n", request[0])
        port, request = answer_once(self, reply)
        code, words = self.good(port=port, profile=os.path.join(self.folder, "none"))
        self.assertEqual((code, "cannot be read" in words), (4, True))
        self.assertIn("\r\nUser-Serial: \r\nUser-ID: 0\r\n", request[0])

    def test_usage_and_library(self):
        table = [
            ([], 2), (["--help"], 0), (["sell"], 2), (["good", "--type", "1"], 2), (["profile"], 2),
            (["good", "--url", "http://h/x", "--profile", "p", "--type", "1", "--id", "99999999999", "--out", "x"], 2),
            (["buy", "--url", "u", "--profile", "p", "--type", "1", "--id", "1", "--port", "65536"], 2),
            (["buy", "--url", "u", "--profile", "p", "--type", "1", "--id", "1", "--library", "/none.so"], 6),
            (["buy", "--url", "u", "--profile", "p", "--type", "1", "--id", "1", "--library", "libc.so.6"], 6),
        ]
        for arguments, expected in table:
            with self.subTest(arguments=arguments):
                self.assertEqual(run(f"{PROGRAMS}/pavonix", *arguments).returncode, expected)

    def buy(self, *arguments, **options):
        return self.call("buy", "--type", "1", "--id", "7", *arguments, **options)

    def test_buy_at_the_shop(self):
        public_key = self.write("device.pub", KEY.public_xml())
        run(f"{PROGRAMS}/pavonix-shop", "device", "add", "--db", self.database_file, "--serial", "PX-1",
            "--user-id", "42", "--public-key", public_key, "--balance", "300")
        self.assertEqual(self.buy(), (0, "bought (200): type 1, id 7\n"))
        for arguments, code in ((["--force"], 909), ([], 908)):
            exit_code, words = self.buy(*arguments)
            self.assertEqual((exit_code, f"error code: {code}\n" in words, "timestamp" in words), (4, True, False))
        other = self.write("other.profile", self.profile_text(user=43))
        self.assertIn("error code: 904\nmessage: This device is not registered\n", self.buy(profile=other)[1])
        self.assertEqual(self.query("SELECT serial, user_id, type, id FROM purchase"), [("PX-1", 42, 1, 7)])

        os.environ["TZ"] = "XXX-9"
        self.addCleanup(os.environ.pop, "TZ")
        exit_code, words = self.buy()
        self.assertIn("error code: 906\nmessage: The clock of the device is off\nserver timestamp: 2", words)
        self.assertEqual(exit_code, 4)

    def test_verdicts_of_other_servers(self):
        table = [
            (b"403 No", b"X-Error-Code: 17\r\nX-Error-Message: Gr\xfc\xdfe, 5 \x80\r\n", b"",
             "error code: 17\nmessage: Gr\u00fc\u00dfe, 5 \u20ac\n"),
            (b"500 Oops", b"", b"out of goods", "error code: 0 (the server sent none)\nmessage: out of goods\n"),
            (b"403 No", b"X-Error-Code: -5\r\n", b"", "error code: -5\nmessage: (none)\n"),
            (b"403 No", b"X-Error-Code: 1\r\nX-Error-Message: %s\r\n" % (b"m" * 900), b"", "m" * 900 + "\n"),
            (b"403 No", b"X-Error-Code: 906\r\nX-Error-Message: off\r\nX-Server-Timestamp: %s\r\n" % (b"t" * 800), b"",
             "message: off\nserver timestamp: " + "t" * 800 + "\n"),
            (b"403 No", b"X-Error-Code: 2\r\nX-Error-Message: \x1b[2J\r\n", b"", "message: ?[2J\n"),
        ]
        for status, headers, body, words in table:
            with self.subTest(headers=headers):
                reply = b"HTTP/1.1 %s\r\n%sContent-Length: %d\r\n\r\n%s" % (status, headers, len(body), body)
                exit_code, output = self.buy(port=answer_once(self, reply)[0])
                self.assertEqual((exit_code, words in output), (4, True), output)
        self.assertEqual(self.buy(port=answer_once(self, b"")[0])[0], 3)


if __name__ == "__main__":
    unittest.main()
