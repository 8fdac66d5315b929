"""What doctor and watch find at servers that we wrote, at nginx and at Python's own server."""

import http.server
import json
import os
import re
import signal
import socket
import subprocess
import threading
import unittest

from client_fixture import ClientTest, OddServer, reset
from shop_fixture import PROGRAMS, run

PAGE = b"<a>" + b"x" * 3000 + b"</a>"
HEAD = b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\n\r\n" % len(PAGE)
SILENCE = 5  # seconds; longer than any time-out here
GAP = 0.2  # seconds, in which a busy machine comes to read


class DoctorTest(ClientTest):
    def doctor(self, *arguments, port=None, path="/shop/list"):
        """Answers the exit code, the results by point, and the rules that were broken with their weights."""
        done = run(f"{PROGRAMS}/pavonix", "doctor", f"http://127.0.0.1{path}", "--port", str(port or self.port),
                   "--json", *arguments)
        report = json.loads(done.stdout)
        results = {point["point"]: point["result"] for point in report["points"]}
        rules = {finding["rule"]: finding for point in report["points"] for finding in point["findings"]}
        return done.returncode, results, rules

    def test_each_fault_is_found(self):
        table = [
            ("sound", (HEAD + PAGE,), set()),
            ("a segment of 1024 bytes first", ((HEAD + PAGE)[:1024], GAP, (HEAD + PAGE)[1024:]), set()),
            ("head alone", (HEAD, GAP, PAGE), {"head-alone"}),
            ("nearly enough first", ((HEAD + PAGE)[:1023], GAP, (HEAD + PAGE)[1023:]), {"head-alone"}),
            ("head in pieces", (HEAD[:20], GAP, HEAD[20:] + PAGE), {"head-in-pieces", "library-differs"}),
            ("long head", (HEAD[:17] + b"X: " + b"y" * 1024 + b"\r\n" + HEAD[17:] + PAGE,), {"head-too-long"}),
            ("no length", (b"HTTP/1.1 200 OK\r\n\r\n" + PAGE,), {"length-missing"}),
            ("chunks", (b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\n<a/>\r\n0\r\n\r\n",), {"chunked"}),
            ("moved", (b"HTTP/1.1 301 Moved\r\nLocation: /x\r\n\r\n",), {"redirect"}),
            ("cut", (HEAD + PAGE[:-4],), {"length-too-large"}),
            ("no XML", (HEAD + PAGE.replace(b"</a>", b"</b>"),), {"not-xml"}),
            ("reset", (HEAD + PAGE[:2000], GAP, reset), {"body-reset"}),
            ("closed", (b"",), {"closed-empty"}),
            ("TLS", (b"\x15\x03\x03\0\2\2\x46",), {"tls"}),
            ("silent", (SILENCE,), {"silent"}),
            ("dripping", tuple([HEAD[:17], b"X: "] + [b"y", 0.05] * 100), {"head-in-pieces", "head-without-end"}),
        ]
        for name, pieces, expected in table:
            with self.subTest(name):
                code, _, rules = self.doctor("--tries", "2", "--timeout", "0.5", port=OddServer(self, *pieces).port)
                self.assertTrue(set(rules) <= expected if name == "dripping" else set(rules) - {"library-differs"} ==
                                expected - {"library-differs"}, rules)
                self.assertEqual(code, 8 if expected else 0)

    def test_segments_that_wait_together_are_told_apart(self):
        """The doctor is held up until head and body both lie before it."""
        def answer(connection):
            os.kill(doctor.pid, signal.SIGSTOP)
            connection.sendall(HEAD)
            connection.sendall(PAGE)
            os.kill(doctor.pid, signal.SIGCONT)

        server = OddServer(self, answer)
        doctor = subprocess.Popen([f"{PROGRAMS}/pavonix", "doctor", f"http://127.0.0.1:{server.port}/x", "--tries", "3"],
                                  stdout=subprocess.PIPE, text=True)
        output = doctor.communicate(timeout=20)[0]
        self.assertEqual((doctor.returncode, f"seen: {len(HEAD)} bytes of" in output), (8, True), output)

    def test_what_comes_before_a_reply(self):
        self.stop_shop()
        code, results, rules = self.doctor()
        self.assertEqual((code, set(rules), results["connection"], results["head"]),
                         (8, {"refused"}, "error", "not tried"))
        done = run(f"{PROGRAMS}/pavonix", "doctor", "https://127.0.0.1/x", "--json")
        self.assertEqual((done.returncode, "url-https" in done.stdout), (8, True))

    def test_the_sample_shop(self):
        self.register(1000)
        code, results, rules = self.doctor("--profile", self.profile)
        self.assertEqual((code, set(results.values()), rules), (0, {"ok"}, {}))
        self.assertEqual(self.query("SELECT count(*) FROM purchase"), [(0,)])
        code, _, rules = self.doctor("--profile", self.profile, "--buy", "1,7")
        self.assertEqual((code, rules), (0, {}))
        self.assertEqual(self.query("SELECT type, id FROM purchase"), [(1, 7)])

    def test_shops_that_check_too_little(self):
        sold = b"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"
        refused = b"HTTP/1.1 403 No\r\nX-Error-Code: %d\r\nX-Error-Message: no\r\nContent-Length: 0\r\n\r\n"
        table = [
            ("sells everything", lambda request: sold, [], {"sold-nothing"}),
            ("knows no good first", lambda request: refused % 903, [], {"token-untold", "replay-untold"}),
            ("sells all that exists", lambda request: sold, ["--buy", "1,7"],
             {"bad-token-sold", "clock-not-checked", "replay-sold"}),
            ("refuses all", lambda request: refused % 17, ["--buy", "1,7"],
             {"device-refused", "clock-other-code", "replay-untold"}),
        ]
        for name, answer, arguments, expected in table:
            with self.subTest(name):
                requests = []

                def serve(connection):
                    request = server.requests[-1]
                    requests.append(request)
                    connection.sendall(answer(request) if request.startswith("POST /shop/buy ") else HEAD + PAGE)

                server = OddServer(self, serve)
                _, _, rules = self.doctor("--profile", self.profile, *arguments, "--tries", "1", port=server.port)
                self.assertEqual(set(rules), expected)
        purchase = next(request for request in requests if request.startswith("POST"))
        token = re.search("\r\nUser-Cert: (.*)\r\n", purchase)[1]
        self.assertEqual(len(token), 172)
        self.assertTrue(purchase.endswith("\r\n\r\ntype=1&id=7&force=0\r\n"))

    def test_a_server_that_leaves_the_line_end_unread(self):
        def read_the_form_only(connection):
            connection.sendall(b"HTTP/1.1 403 No\r\nX-Error-Code: 5\r\nX-Error-Message: no\r\n\r\n")
            reset(connection)

        server = OddServer(self, read_the_form_only)
        shown = OddServer(self, HEAD + PAGE)
        self.assertIn("line-end-unread", self.doctor("--profile", self.profile, "--buy-url", "http://127.0.0.1/x",
                                                     "--tries", "1", port=self.both(shown, server))[2])

    def both(self, downloads, purchases):
        """The port of a server that downloads come from one, purchases from the other."""
        def choose(connection):
            chosen = purchases if front.requests[-1].startswith("POST") else downloads
            for piece in chosen.pieces:
                piece(connection) if callable(piece) else connection.sendall(piece)

        front = OddServer(self, choose)
        return front.port

    def test_hostile_bytes_are_escaped(self):
        server = OddServer(self, b"HTTP/1.1 404 \x1b[2J\x07\xff\r\nLocation: \x1b]0;x\x07\r\n\r\n")
        done = subprocess.run([f"{PROGRAMS}/pavonix", "doctor", "http://127.0.0.1/x", "--port", str(server.port),
                               "--tries", "1"], capture_output=True, timeout=20)
        self.assertIn(b"404 \\x1b[2J\\x07\\xff", done.stdout)
        self.assertTrue(done.stdout.isascii() and b"\x1b" not in done.stdout + done.stderr)

    def test_pythons_own_server(self):
        """It sends head and body apart, which mostly goes unnoticed on one machine."""
        folder = os.path.join(self.folder, "www")
        os.mkdir(folder)
        self.write("www/page.xml", PAGE.decode())

        class Quiet(http.server.SimpleHTTPRequestHandler):
            def log_message(self, *_):
                pass

        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), lambda *a: Quiet(*a, directory=folder))
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        for _ in range(3):
            code, results, rules = self.doctor(port=server.server_port, path="/page.xml")
            self.assertEqual((code, set(rules), results["segments"]), (8, {"head-alone"}, "error"))

    def test_nginx(self):
        """Files sent with sendfile come apart from their head, unless tcp_nopush holds it back."""
        self.write("page.xml", PAGE.decode())
        os.chmod(self.folder, 0o755)
        for lines, expected in (("", set()), ("sendfile on; tcp_nopush on;", set()),
                                ("sendfile on;", {"head-alone"})):
            with self.subTest(lines):
                port = self.start_nginx(lines)
                code, _, rules = self.doctor(port=port, path="/page.xml")
                self.assertEqual((code, set(rules)), (8 if expected else 0, expected))

    def start_nginx(self, lines):
        with socket.create_server(("127.0.0.1", 0)) as free:
            port = free.getsockname()[1]
        configuration = self.write("nginx.conf", f"""
            daemon off; pid {self.folder}/nginx.pid; error_log {self.folder}/error.log;
            events {{}}
            http {{ access_log off; {lines}
                   client_body_temp_path {self.folder}/b; proxy_temp_path {self.folder}/p;
                   fastcgi_temp_path {self.folder}/f; uwsgi_temp_path {self.folder}/u; scgi_temp_path {self.folder}/s;
                   server {{ listen 127.0.0.1:{port}; root {self.folder}; }} }}""")
        nginx = subprocess.Popen(["nginx", "-e", "stderr", "-p", self.folder, "-c", configuration],
                                 stderr=subprocess.DEVNULL)
        self.addCleanup(nginx.wait)
        self.addCleanup(nginx.terminate)
        while nginx.poll() is None:
            try:
                socket.create_connection(("127.0.0.1", port)).close()
                return port
            except ConnectionRefusedError:
                pass
        self.fail("nginx did not start")


class WatchTest(ClientTest):
    def watch(self, port, exchanges, *arguments):
        relay = subprocess.Popen([f"{PROGRAMS}/pavonix", "watch", "--listen", "0", "--address", "127.0.0.1", "--to",
                                  f"127.0.0.1:{port}", "--exchanges", str(exchanges), *arguments],
                                 stdout=subprocess.PIPE, text=True)
        self.addCleanup(relay.kill)
        self.relay_port = int(re.search(r"port (\d+)", relay.stdout.readline())[1])
        return relay

    def test_a_device_works_through_it(self):
        self.register(1000)
        relay = self.watch(self.port, 3)
        self.assertEqual(self.good(port=self.relay_port)[0], 0)
        self.assertEqual(self.buy(port=self.relay_port)[0], 0)
        self.assertEqual(self.buy(port=self.relay_port)[0], 4)
        output = relay.communicate(timeout=10)[0]
        self.assertEqual(relay.returncode, 0)
        self.assertEqual(output.count("nothing wrong"), 3)
        for words in ("  > GET /shop/good?type=3&id=5 HTTP/1.1\\r\\n", "  > type=1&id=7&force=0\\r\\n  (21 bytes)",
                      "  < HTTP/1.1 200 OK\\r\\n", "  < X-Error-Code: 908\\r\\n"):
            self.assertIn(words, output)

    def test_it_hides_no_fault_and_names_it(self):
        """A reply in pieces arrives in pieces, so that the client behind it fails as it does without it."""
        table = [
            ((HEAD, 0.05, PAGE), "good", 5, "error head-alone"),
            ((HEAD[:20], 0.05, HEAD[20:] + PAGE), "good", 3, "error head-in-pieces"),
            ((reset,), "buy", 3, "error reset-early"),
            ((HEAD + PAGE,), "good", 0, "nothing wrong"),
            ((SILENCE,), "good", 3, "error silent"),
            ((b"HTTP/1.1 404 \x1b[2J\r\n\r\n",), "good", 4, "404 \\x1b[2J"),
        ]
        for pieces, command, expected, words in table:
            with self.subTest(words):
                relay = self.watch(OddServer(self, *pieces).port, 1, "--timeout", "1")
                code, output = self.judged(command, port=self.relay_port)
                seen = relay.communicate(timeout=10)[0]
                self.assertEqual((code, words in seen, "\x1b" in seen), (expected, True, False), seen)
        relay = self.watch(1, 1)
        code, _ = self.good("--force", port=self.relay_port)
        self.assertEqual((code, "error refused" in relay.communicate()[0]), (3, True))


if __name__ == "__main__":
    unittest.main()
