"""The command-line client: its output and exit codes with the sample shop and with odd servers."""

import json
import os
import pty
import signal
import subprocess
import time

from client_fixture import ClientTest
from odd_server import OddServer, reset
from shop_fixture import PROGRAMS, run

HEAD = b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\n\r\n"
SILENCE = 5  # seconds; longer than the client waits


class CommandTest(ClientTest):
    def test_list_and_good_store_the_reply(self):
        query = "--type 2 --category 2 --sort 3 --start 1 --max 2".split()
        code, words = self.call("list", "--out", self.target, *query)
        reply = self.ask("GET", "/shop/list?type=2&category=2&sort=3&start=1&max=2")[2]
        self.assertEqual((code, self.read_target()), (0, reply))
        self.assertIn(f"stored {len(reply)} bytes", words)
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
        for name, reason in (("one/two/x.xml", "more than one folder"), ("книги.xml", "code page 1252 lacks"),
                             ("x" * 250 + ".xml", "the library allows at most 259")):
            code, words = self.good("--force", out=os.path.join(self.folder, name))
            self.assertEqual((code, "nothing was stored" in words, reason in words), (5, True, True), words)
        for path in (os.path.join(self.folder, "*.xml"), "-"):
            self.assertEqual(self.good(out=path)[0], 2)

    def test_only_regular_files_are_replaced(self):
        fifo = os.path.join(self.folder, "fifo")
        os.mkfifo(fifo)
        for path in (fifo, self.folder, "/dev/null"):
            code, words = self.good("--force", out=path)
            self.assertEqual((code, os.path.isfile(path)), (6, False), words)

    def test_causes_and_exit_codes(self):
        """The exit code and cause of a download and of a purchase from the same server."""
        whole = HEAD % 4 + b"<a/>"
        long_page = b"<a>" + b"x" * 3000 + b"</a>"
        table = [
            ("closed", (b"",), (3, "closed-empty"), (3, "closed-empty")),
            ("head in pieces", (whole[:20], 0.1, whole[20:]), (3, "head-in-pieces"), (3, "head-in-pieces")),
            ("interim", (b"HTTP/1.1 100 Continue\r\n\r\n" + whole,), (4, "interim"), (4, "interim")),
            ("head alone", (HEAD % len(long_page), 0.1, long_page), (5, "head-alone"), (0, None)),
            ("cut short", (HEAD % 100 + b"<good>",), (5, "length-too-large"), (0, None)),
            ("reset in the body", (HEAD % 9999 + b"<good>", 0.1, reset), (5, "body-reset"), (0, None)),
            ("silent", (SILENCE,), (9, "silent"), (9, "silent")),
            ("slow head", (b"HTTP/1.1 200 OK\r\nContent-Le", SILENCE), (3, "head-in-pieces"), (3, "head-in-pieces")),
            ("silent in the body", (HEAD % 9999 + b"<good>", SILENCE), (9, "length-too-large"), (0, None)),
        ]
        for name, pieces, download, purchase in table:
            for command, expected in (("good", download), ("buy", purchase)):
                with self.subTest(name, command=command):
                    server = OddServer(self, *pieces)
                    os.environ["PAVONIX_TIMEOUT"] = "0.4" if SILENCE in pieces else "20"
                    code, report = self.diagnosed(command, port=server.port)
                    self.assertEqual((code, report.get("cause")), expected, report)
                    self.assertEqual(len(server.requests), 1)
        del os.environ["PAVONIX_TIMEOUT"]

    def test_causes_before_a_request(self):
        self.stop_shop()
        table = [("https://127.0.0.1/x", 10, "url-https"), ("ftp://127.0.0.1/x", 10, "url-scheme"),
                 ("http://[::1]/x", 10, "url-ipv6"), ("http://127.0.0.1", 10, "url-no-path"),
                 ("http://127.0.0.1/" + "x" * 250, 10, "url-too-long"), ("http://127.0.0.1/x", 11, "refused")]
        for url, *expected in table:
            with self.subTest(url):
                for command in ("good", "buy"):
                    code, report = self.diagnosed(command, url=url)
                    self.assertEqual([code, report["cause"], report["status"]], [*expected, 0])
        self.assertFalse(report["record_touched"])
        code, report = self.diagnosed("good", url="http://no.such.host.invalid/x")
        self.assertIn((code, report["cause"]), [(11, "name-unknown"), (11, "name-no-answer")])

    def test_record_and_file_are_described(self):
        server = OddServer(self, b"HTTP/1.1 200 OK\r\n", 0.1, b"\r\n")
        words = self.buy(port=server.port)[1]
        self.assertIn('code 0 and the message "TP/1.1 200 OK\\r\\n"', words)
        self.assertIn("may have sold", words)
        self.assertEqual(("within 0.2 s" in self.buy("--timeout", "0.2", port=OddServer(self, 1).port)[1],
                          "may have sold" in self.buy(port=1)[1]), (True, False))
        page = b"<a>" + b"x" * 3000 + b"</a>"
        code, words = self.good(port=OddServer(self, HEAD % len(page), 0.1, page).port)
        self.assertEqual((code, f"{1024 - len(HEAD % 3007)} bytes of it are zeros" in words), (5, True), words)
        code, words = self.call("good", "--type", "3", "--id", "99", "--force", "--out", self.target)
        self.assertIn("error code: 903\nmessage: There is no such good", words)

    def test_interrupted(self):
        """The incomplete file is reported, and again by the next call."""
        server = OddServer(self, HEAD % 10 ** 8 + b"<a>" + b"x" * 50000, 60)
        self.write("stored.xml", "<old/>")
        for force, left in ((["--force"], "is incomplete; use --force"), ([], "kept")):
            client = subprocess.Popen([f"{PROGRAMS}/pavonix", "good", "--url", "http://127.0.0.1/x", "--port",
                                       str(server.port), "--profile", self.profile, "--type", "1", "--id", "1", "--out",
                                       self.target, *force], stderr=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
            while force and self.read_target()[:3] != b"<a>":
                time.sleep(0.01)
            if force:
                client.send_signal(signal.SIGINT)
            output, errors = client.communicate(timeout=10)
            self.assertEqual((client.returncode, left in output + errors), (130 if force else 1, True), errors)
        self.assertIn("not a complete XML document", errors)

    def test_progress_on_a_terminal(self):
        page = b"<a>" + b"x" * 10 ** 6 + b"</a>"
        server = OddServer(self, HEAD % len(page) + page[:500000], 1.1, page[500000:])
        terminal, far_end = pty.openpty()
        code = subprocess.run([f"{PROGRAMS}/pavonix", "good", "--url", "http://127.0.0.1/x", "--port", str(server.port),
                               "--profile", self.profile, "--type", "1", "--id", "1", "--out", self.target],
                              stderr=far_end, stdout=subprocess.DEVNULL, timeout=20).returncode
        self.assertEqual(code, 0)
        self.assertIn(b" MB of 1.0", os.read(terminal, 65536))
        os.close(terminal)
        os.close(far_end)

    def test_terminal_is_safe_from_the_server(self):
        body = "<a>\x1b[2J\x85\x9d\u2028\u202e\u2066äöü€</a>".encode() + b"\xff" + "ä".encode() * 200
        port = OddServer(self, b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\n\r\n%s" % (len(body), body)).port
        code, words = self.good(port=port)
        self.assertEqual((code, "\\x1b[2J\\u0085\\u009d\\u2028\\u202e\\u2066äöü€</a>\\xffä" in words), (5, True), words)
        profile = self.write("odd.profile", "User-Agent: \x9d\u202e\n")
        self.assertIn("User-Agent: \\u009d\\u202e\n", run(f"{PROGRAMS}/pavonix", "profile", "check", profile).stdout)
        encoding = b"<?xml version='1.0' encoding='UTF-16'?><a/>\xff"
        for page in (encoding, b"<a>" * 300):
            words = self.good("--force", port=OddServer(self, HEAD % len(page) + page).port)[1]
            self.assertEqual(("I/O" in words, "XML_PARSE" in words, "line 0" in words), (False, False, False), words)

    def test_a_complete_file_is_no_error(self):
        """Harmless oddities are warnings; a refusal's body is shown."""
        for reply in (b"HTTP/1.1 200 OK\r\nContent-Length: +4\r\n\r\n<a/>", b"ICY 200 OK\r\nContent-Length: 4\r\n\r\n<a/>",
                      b"\r\nHTTP/1.1 200 OK\r\nContent-Length: 4\r\nTransfer-Encoding: identity\r\n\r\n<a/>"):
            with self.subTest(reply):
                code, words = self.good("--force", port=OddServer(self, reply).port)
                self.assertEqual((code, "error" in words, "warning" in words), (0, False, b"\r\nHTTP" not in reply), words)
        words = self.good("--force", port=OddServer(self, b"HTTP/1.1 404 No\r\n\r\nno\x1b such good").port)[1]
        self.assertIn("body: no\\x1b such good", words)

    def test_an_endless_body_ends_with_the_time_out(self):
        def flood(connection):
            while True:
                connection.sendall(b"x" * 65536)

        server = OddServer(self, HEAD % (2 ** 31 - 2), flood)
        self.assertEqual(self.good("--timeout", "1", port=server.port)[0], 9)
        self.assertEqual(run(f"{PROGRAMS}/pavonix", "doctor", f"http://127.0.0.1:{server.port}/x", "--timeout", "1",
                             "--tries", "1").returncode, 8)

    def test_request(self):
        """The port is --port, else that of the URL; the identity is that of the profile."""
        reply = b"HTTP/1.1 404 Not Found\r\n\r\n"
        server = OddServer(self, reply)
        done = run(f"{PROGRAMS}/pavonix", "good", "--url", f"http://127.0.0.1:{server.port}/g", "--profile", self.profile,
                   "--type", "-1", "--id", "2147483647", "--out", self.target)
        self.assertEqual(done.returncode, 4, done.stderr)
        head = f"GET /g?type=-1&id=2147483647 HTTP/1.1\r\nHost: 127.0.0.1:{server.port}\r\n"
        self.assertTrue(server.requests[0].startswith(head))
        self.assertIn("\r\nUser-Agent: Test/1\r\n", server.requests[0])
        self.assertIn("\r\nUser-Serial: PX-1\r\nUser-ID: 42\r\n", server.requests[0])
        server = OddServer(self, reply)
        code, words = self.good(port=server.port, profile=os.path.join(self.folder, "none"))
        self.assertEqual((code, "cannot be read" in words), (4, True))
        self.assertIn("\r\nUser-Serial: \r\nUser-ID: 0\r\n", server.requests[0])

    def test_usage(self):
        table = [
            ([], 2), (["--help"], 0), (["sell"], 2), (["good", "--type", "1"], 2), (["profile"], 2),
            (["good", "--url", "http://h/x", "--profile", "p", "--type", "1", "--id", "99999999999", "--out", "x"], 2),
            (["buy", "--url", "u", "--profile", "p", "--type", "1", "--id", "1", "--port", "65536"], 2),
        ]
        for arguments, expected in table:
            with self.subTest(arguments=arguments):
                self.assertEqual(run(f"{PROGRAMS}/pavonix", *arguments).returncode, expected)

    def test_unknown_words_are_named(self):
        table = [("pavonix", ["buuy"], "unknown command buuy; did you mean buy?"),
                 ("pavonix", ["profile", "chek"], "did you mean check?"),
                 ("pavonix", ["profile", "check", "a", "b"], "unexpected argument b\n"),
                 ("pavonix", ["buy", "--typ", "1"], "unknown option --typ; did you mean --type?"),
                 ("pavonix", ["list", "--out", "--x", "--zzzzzz=1"], "unknown option --zzzzzz\n"),
                 ("pavonix-shop", ["purchase"], "unknown command purchase; did you mean purchases?"),
                 ("pavonix-shop", ["device", "list", "--bd", "x"], "unknown option --bd; did you mean --db?")]
        for program, arguments, words in table:
            done = run(f"{PROGRAMS}/{program}", *arguments)
            self.assertEqual((done.returncode, words in done.stderr), (2, True), done.stderr)
        self.assertRegex(run(f"{PROGRAMS}/pavonix", "--version").stdout, r"^pavonix \d+\.\d+\.\d+\n$")

    def test_trace(self):
        """Only the trace of this call is shown, and the output stays JSON."""
        self.write("device.profile.trace.txt", "an older trace\n")
        done = run(f"{PROGRAMS}/pavonix", "good", "--url", "http://127.0.0.1/x", "--port", "1", "--profile",
                   self.profile, "--type", "1", "--id", "1", "--out", self.target, "--trace", "--json")
        self.assertEqual((done.returncode, json.loads(done.stdout)["cause"]), (11, "refused"))
        self.assertEqual(("connect failed" in done.stderr, "older" in done.stderr), (True, False), done.stderr)

    def test_environment(self):
        """The command line overrides the environment."""
        environment = {**os.environ, "PAVONIX_URL": "http://127.0.0.1/shop/{}", "PAVONIX_PORT": str(self.port),
                       "PAVONIX_PROFILE": self.profile}
        words = [f"{PROGRAMS}/pavonix", "good", "--type", "3", "--id", "5", "--out", self.target, "--force"]
        done = run(*words, env=environment)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(run(*words, "--port", "1", env=environment).returncode, 11)

    def test_a_full_output_is_no_success(self):
        with open("/dev/full", "w") as full:
            done = subprocess.run([f"{PROGRAMS}/pavonix", "good", "--url", "http://127.0.0.1/shop/good", "--port",
                                   str(self.port), "--profile", self.profile, "--type", "3", "--id", "5", "--out",
                                   self.target], stdout=full, stderr=subprocess.DEVNULL)
        self.assertEqual(done.returncode, 6)

    def test_buy_at_the_shop(self):
        self.register_device(300)
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

    def test_refusals_of_other_servers(self):
        table = [
            (b"403 No", b"X-Error-Code: 17\r\nX-Error-Message: Gr\xfc\xdfe, 5 \x80\r\n", b"",
             "error code: 17\nmessage: Gr\u00fc\u00dfe, 5 \u20ac\n"),
            (b"500 Oops", b"", b"out of goods", "error code: 0 (none readable)\nmessage: out of goods\n"),
            (b"403 No", b"X-Error-Code: -5\r\n", b"", "error code: -5\nmessage: (none)\n"),
            (b"403 No", b"X-Error-Code: 1\r\nX-Error-Message: %s\r\n" % (b"m" * 900), b"", "m" * 900 + "\n"),
            (b"403 No", b"X-Error-Code: 906\r\nX-Error-Message: off\r\nX-Server-Timestamp: %s\r\n" % (b"t" * 800), b"",
             "message: off\nserver timestamp: " + "t" * 800 + "\n"),
            (b"403 No", b"X-Error-Code: 2\r\nX-Error-Message: \x1b[2J\r\n", b"", "message: \\x1b[2J\n"),
            (b"403 No", b"X-Error-Code: 2\r\nX-Error-Message: A \x9d0;t \x90q\r\n", b"", "A \\u009d0;t \\u0090q\n"),
        ]
        for status, headers, body, words in table:
            with self.subTest(headers=headers):
                reply = b"HTTP/1.1 %s\r\n%sContent-Length: %d\r\n\r\n%s" % (status, headers, len(body), body)
                exit_code, output = self.buy(port=OddServer(self, reply).port)
                self.assertEqual((exit_code, words in output), (4, True), output)
