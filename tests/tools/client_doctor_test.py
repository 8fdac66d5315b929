"""The findings of doctor and watch with odd servers and with nginx."""

import json
import os
import pty
import re
import signal
import socket
import subprocess
import sys
import time

from shop_fixture import HERE, PROGRAMS, run

sys.path.append(os.path.join(HERE, "../../tools/demo"))
import engines
from client_fixture import ClientTest
from odd_server import OddServer, reset

PAGE = b"<a>" + b"x" * 3000 + b"</a>"
HEAD = b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\n\r\n" % len(PAGE)
SILENCE = 5  # seconds, longer than any time-out here
GAP = 0.3  # seconds, in which even a busy machine reads


class DoctorTest(ClientTest):
    def doctor(self, *arguments, port=None, path="/shop/list"):
        """Returns the exit code, the results by point, and the findings by rule."""
        done = run(f"{PROGRAMS}/pavonix", "doctor", f"http://127.0.0.1{path}", "--port", str(port or self.port),
                   "--json", *arguments)
        self.report = report = json.loads(done.stdout)
        results = {point["point"]: point["result"] for point in report["points"]}
        rules = {finding["rule"]: finding for point in report["points"] for finding in point["findings"]}
        return done.returncode, results, rules

    def test_each_fault_is_found(self):
        table = [
            ("sound", (HEAD + PAGE,), set()),
            ("a segment of 1024 bytes first", ((HEAD + PAGE)[:1024], GAP, (HEAD + PAGE)[1024:]), set()),
            ("head alone", (HEAD, GAP, PAGE), {"head-alone"}),
            ("nearly enough first", ((HEAD + PAGE)[:1023], GAP, (HEAD + PAGE)[1023:]), {"head-alone"}),
            ("head in pieces", (HEAD[:20], GAP, HEAD[20:] + PAGE), {"head-in-pieces"}),
            ("reset", (HEAD + PAGE[:2000], GAP, reset), {"body-reset"}),
            ("closed", (b"",), {"closed-empty"}),
            ("silent", (SILENCE,), {"silent"}),
        ]
        for name, pieces, expected in table:
            with self.subTest(name):
                timeout = "0.5" if name == "silent" else "10"
                code, _, rules = self.doctor("--tries", "2", "--timeout", timeout,
                                                   port=OddServer(self, *pieces).port)
                self.assertEqual(set(rules) - {"library-differs", "file-not-whole"}, expected, rules)
                self.assertEqual(code, 8 if expected else 0)

    def test_segments_that_wait_together_are_told_apart(self):
        """The doctor is stopped until both head and body have arrived."""
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

    def test_faults_before_a_reply(self):
        self.stop_shop()
        code, results, rules = self.doctor()
        self.assertEqual((code, set(rules), results["connection"], results["head"]),
                         (8, {"refused"}, "error", "not tried"))
        done = run(f"{PROGRAMS}/pavonix", "doctor", "https://127.0.0.1/x", "--json")
        self.assertEqual((done.returncode, "url-https" in done.stdout), (8, True))

    def test_the_sample_shop(self):
        self.register_device(1000)
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
            ("knows no good first", lambda request: refused % 903, [], {"token-unverified", "replay-unverified"}),
            ("sells all that exists", lambda request: sold, ["--buy", "1,7"],
             {"bad-token-sold", "clock-not-checked", "replay-sold"}),
            ("is a file server", lambda request: b"HTTP/1.1 404 No\r\n\r\n", [], {"not-a-shop", "code-missing"}),
            ("sells elsewhere", lambda request: refused % 900, ["--buy", "1,7"], {"not-a-shop", "clock-other-code",
                                                                                 "replay-unverified"}),
            ("refuses all", lambda request: refused % 17, ["--buy", "1,7"],
             {"device-refused", "clock-other-code", "replay-unverified"}),
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

    def test_a_server_that_does_not_read_the_line_end(self):
        def read_the_form_only(connection):
            connection.sendall(b"HTTP/1.1 403 No\r\nX-Error-Code: 5\r\nX-Error-Message: no\r\n\r\n")
            reset(connection)

        purchases, downloads = OddServer(self, read_the_form_only), OddServer(self, HEAD + PAGE)
        self.assertIn("line-end-unread", self.doctor("--profile", self.profile, "--tries", "1", "--buy-url",
                                                     f"http://127.0.0.1:{purchases.port}/x", port=downloads.port)[2])

    def test_purchases_go_to_the_port_of_their_url(self):
        purchases = OddServer(self, b"HTTP/1.1 403 No\r\nX-Error-Code: 5\r\nX-Error-Message: no\r\n\r\n")
        downloads = OddServer(self, HEAD + PAGE)
        self.doctor("--profile", self.profile, "--tries", "1", "--buy-url", f"http://127.0.0.1:{purchases.port}/b",
                    port=downloads.port)
        self.assertEqual({request.split()[0] for request in purchases.requests}, {"POST"})
        self.assertEqual({request.split()[0] for request in downloads.requests}, {"GET"})

    def test_requests_are_the_librarys(self):
        """The requests over plain sockets equal those of the client's commands, except for the token."""
        server = OddServer(self, HEAD + PAGE)
        arguments = ["--profile", self.profile, "--tries", "1"]
        self.doctor(*arguments, "--good", "3,5", "--buy", "1,7", port=server.port, path="/shop/good")
        self.assertEqual(self.good(port=server.port)[0], 0)
        self.buy(port=server.port)
        requests = {re.sub("User-Cert: .*", "", request) for request in server.requests}
        self.assertEqual(sorted(request.split()[0] for request in requests), ["GET", "POST"], requests)

    def test_the_verdict_names_its_scope(self):
        self.register_device(1000)
        command = [f"{PROGRAMS}/pavonix", "doctor", f"http://127.0.0.1:{self.port}/shop/list", "--quiet", "--tries", "1"]
        profile, buy = ["--profile", self.profile], ["--buy", "1,7"]
        for arguments, covered, rest in (([], "Downloads from this server are", "purchases; use --profile"),
                                         (profile, "Downloads and refused purchases are", "use --buy TYPE,ID"),
                                         (profile + buy, "This server is compatible", "")):
            lines = run(*command, *arguments).stdout.splitlines()[-3 if rest else -2:]
            self.assertTrue(lines[0].startswith(covered) and rest in lines[1] and "may have been missed" in lines[-1], lines)

    def test_rare_faults_are_counted_and_fixes_chosen(self):
        for server_line, fixes in ((b"Server: nginx/1.22", 3), (b"X: y", 2)):
            head = HEAD.replace(b"\r\n\r\n", b"\r\n" + server_line + b"\r\n\r\n")
            pauses = iter([0, 0, 0, 0, 0, GAP])

            def serve(connection):
                connection.sendall(head)
                time.sleep(next(pauses, 0))
                connection.sendall(PAGE)

            _, _, rules = self.doctor("--tries", "8", port=OddServer(self, serve).port)
            finding = rules["head-alone"]
            self.assertEqual((finding["tries"] >= finding["times"] >= 1, finding["tries"] >= 8), (True, True), finding)
            self.assertEqual((finding["fixes"][0], len(finding["fixes"]), "operating.md" in finding["fixes"][-1]),
                             ("send head and body with one write and set Content-Length", fixes, True), finding)

    def test_progress_and_interruption(self):
        for quiet in ([], ["--quiet"]):
            server = OddServer(self, 0.6, HEAD + PAGE)
            terminal, far_end = pty.openpty()
            doctor = subprocess.Popen([f"{PROGRAMS}/pavonix", "doctor", f"http://127.0.0.1:{server.port}/x", *quiet],
                                      stdout=subprocess.PIPE, stderr=far_end, text=True)
            shown = b""
            while b"download 3 of at least 10" not in shown if not quiet else len(server.requests) < 4:
                time.sleep(0.01)
                shown += b"" if quiet else os.read(terminal, 65536)
            doctor.send_signal(signal.SIGINT)
            output = doctor.communicate(timeout=10)[0]
            shown += os.read(terminal, 65536)
            self.assertEqual((doctor.returncode, b"download" in shown), (130, not quiet), shown)
            self.assertRegex(output, "Interrupted after [3-9] downloads: no verdict")
            os.close(terminal)
            os.close(far_end)

    def test_nginx(self):
        """With sendfile, a file is sent apart from its head unless tcp_nopush is on."""
        self.write("page.xml", PAGE.decode())
        os.chmod(self.folder, 0o755)
        for lines, expected in (("", set()), ("sendfile on; tcp_nopush on;", set()),
                                ("sendfile on;", {"head-alone"})):
            with self.subTest(lines):
                port = self.start_nginx(lines)
                code, _, rules = self.doctor(port=port, path="/page.xml")
                self.assertEqual((code, set(rules) - {"file-not-whole"}), (8 if expected else 0, expected))

    def start_nginx(self, lines):
        port = engines.free_port()
        temporary = " ".join(f"{name}_temp_path {self.folder}/{name};"
                             for name in ("client_body", "proxy", "fastcgi", "uwsgi", "scgi"))
        path = self.write("nginx.conf", f"pid {self.folder}/nginx.pid; error_log {self.folder}/error.log; events {{}} "
                          f"http {{ access_log off; {lines} {temporary} "
                          f"server {{ listen 127.0.0.1:{port}; root {self.folder}; }} }}")
        command = ["nginx", "-p", self.folder, "-c", path, "-e", "stderr", "-g", "daemon off;"]
        return self.enterContext(engines.Engine(self.folder, "nginx", command, port)).port


class WatchTest(ClientTest):
    def watch(self, port, exchanges, *arguments):
        relay = subprocess.Popen([f"{PROGRAMS}/pavonix", "watch", "--listen", "0", "--address", "127.0.0.1", "--to",
                                  f"127.0.0.1:{port}", "--exchanges", str(exchanges), *arguments],
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(relay.kill)
        first = (relay.stderr if "--json" in arguments else relay.stdout).readline()
        self.relay_port = int(re.search(r"port (\d+)", first)[1])
        return relay

    def test_a_device_works_through_the_relay(self):
        self.register_device(1000)
        relay = self.watch(self.port, 3)
        self.assertEqual(self.good(port=self.relay_port)[0], 0)
        self.assertEqual(self.buy(port=self.relay_port)[0], 0)
        self.assertEqual(self.buy(port=self.relay_port)[0], 4)
        output = relay.communicate(timeout=10)[0]
        self.assertEqual(relay.returncode, 0)
        self.assertEqual(output.count("no fault found"), 3)
        self.assertRegex(output, r"\n20\d\d-\d\d-\d\d \d\d:\d\d:\d\d\S* 127\.0\.0\.1:\d+ exchange 2: status 200")
        for words in ("  > GET /shop/good?type=3&id=5 HTTP/1.1\\r\\n", "  > type=1&id=7&force=0\\r\\n  (21 bytes)",
                      "  < HTTP/1.1 200 OK\\r\\n", "  < X-Error-Code: 908\\r\\n"):
            self.assertIn(words, output)

    def test_faults_are_forwarded_and_named(self):
        """A reply in pieces stays in pieces, so that the client fails like without the relay."""
        table = [
            ((HEAD, GAP, PAGE), "good", 5, "error head-alone"),
            ((HEAD[:20], GAP, HEAD[20:] + PAGE), "good", 3, "error head-in-pieces"),
            ((reset,), "buy", 3, "error reset-early"),
            ((SILENCE,), "good", 3, "error silent"),
            ((b"HTTP/1.1 404 \x1b[2J\r\n\r\n",), "good", 4, "404 \\x1b[2J"),
        ]
        for pieces, command, expected, words in table:
            with self.subTest(words):
                relay = self.watch(OddServer(self, *pieces).port, 1, "--timeout", "1")
                code, output = self.diagnosed(command, port=self.relay_port)
                seen = relay.communicate(timeout=10)[0]
                self.assertEqual((code, words in seen, "\x1b" in seen), (expected, True, False), seen)
        relay = self.watch(1, 1)
        code, _ = self.good("--force", port=self.relay_port)
        self.assertEqual((code, "error refused" in relay.communicate()[0]), (3, True))

    def test_the_clients_faults_are_not_the_servers(self):
        request = b"GET /x HTTP/1.1\r\nUser-Serial: P\r\nUser-ID: 1\r\n\r\n"
        table = [(b"", False, ["no-request"]), (b"GET /x", False, ["no-request"]), (b"", True, ["no-request"]),
                 (request, False, ["client-left"])]
        server = OddServer(self, HEAD.replace(b"3007", b"50000007") + PAGE, SILENCE)
        relay = self.watch(server.port, len(table), "--timeout", "1", "--json")
        for sent, waits, rules in table:
            with self.subTest(sent):
                client = socket.create_connection(("127.0.0.1", self.relay_port))
                client.sendall(sent)
                if sent == request:
                    client.recv(100)
                if not waits:
                    client.close()
                seen = json.loads(relay.stdout.readline())
                client.close()
                self.assertEqual([finding["rule"] for finding in seen["findings"]], rules, seen)
                self.assertTrue(seen["client"].startswith("127.0.0.1:") and seen["time"].startswith("20"))
        done = run(f"{PROGRAMS}/pavonix", "watch", "--listen", "0", "--to", "http://127.0.0.1:80")
        self.assertEqual((done.returncode, "without http://" in done.stderr), (2, True), done.stderr)
