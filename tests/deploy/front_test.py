"""What the devices get from an awkward shop: as it is, through Varnish and through nginx."""

import contextlib
import http.client
import os
import shutil
import socket
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.parse
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path
from unittest import mock

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools/demo"))
import engines
from awkward_shop import PAGE, PAGES, AwkwardShop
from caller import BUILD, Caller

FLAVOURS = os.environ.get("PAVONIX_FLAVOURS", "linux").split(",")
PROFILE = Path(__file__).resolve().parents[1] / "data/device.profile"
DATA_SEGMENTS_IN = 152  # in Linux's struct tcp_info

# What a download brings: the page, a file with zeros, the page's start, something else, or a status and no file.
DOWNLOADS = """
                        alone   Varnish  nginx
good                    right   right    right
head_apart              zeros   right    right
head_in_two             0       right    right
in_pieces               zeros   right    right
chunked                 zeros   right    wrong
chunked_at_once         wrong   right    wrong
no_length               cut     right    wrong
lower_case_names        cut     right    right
name_in_another_header  cut     right    right
compressed              wrong   right    wrong
compressed_in_chunks    zeros   right    wrong
long_head               0       right    0
head_of_8_kb            0       right    0
many_headers            right   right    right
cookies                 right   right    right
redirect                302     right    302
redirect_relative       302     right    302
a/b/redirect_upwards    302     right    302
redirect_by_host        302     right    302
redirect_query          302     right    302
redirect_to_itself      302     502      302
redirect_elsewhere      302     502      302
of_20_mb                right   right    right
interim                 103     503      -
empty                   zeros   502      zeros
empty_in_chunks         zeros   502      zeros
empty_compressed        wrong   502      zeros
other_coding            right   502      right
cut                     cut     503      -
not_http                0       503      0
no_words                0       503      503
failed                  500     500      500
missing                 404     404      404
"""
FAILED = (999, " The shop failed or cannot be reached, try again without force", None)
# What a purchase brings through Varnish: status, and code, message and timestamp of a refusal.
PURCHASES = {
    "sold": (200, None),
    "sold_apart": (200, None),
    "lower_case_names": (403, (906, " clock", " 2026")),
    "overlong": (403, (906, " " + "m" * 254, " " + "t" * 62)),
    "names_in_the_message": (403, (8, " no X-Error-Code: 7", None)),
    "windows_1252": (403, (17, " Grüße, 5 €", None)),
    "html": (403, FAILED),
    "short_html": (403, FAILED),
    "short_body": (403, (0, "closed today", None)),
    "redirect": (502, FAILED),
    "no_words": (503, FAILED),
}


def ask(port, path, source="127.0.0.1", **headers):
    """Returns status, body and seconds; 0 for a reply that ends early."""
    start = time.monotonic()
    connection = http.client.HTTPConnection("127.0.0.1", port, timeout=100, source_address=(source, 0))
    with contextlib.closing(connection):
        connection.request("GET", path, headers={name.replace("_", "-"): value for name, value in headers.items()})
        try:
            reply = connection.getresponse()
            status, body = reply.status, reply.read()
        except (http.client.HTTPException, OSError):
            status, body = 0, b""
    return status, body, time.monotonic() - start


def at_once(*calls):
    with ThreadPoolExecutor(len(calls)) as pool:
        return [future.result() for future in [pool.submit(call) for call in calls]]


class FrontTest(unittest.TestCase):
    def setUp(self):
        self.folder = self.enterContext(tempfile.TemporaryDirectory())
        shutil.copy(PROFILE, self.folder)
        self.target = Path(self.folder, "page.xml")
        self.shop = self.enterContext(AwkwardShop())

    def device(self, flavour="linux"):
        return self.enterContext(Caller(flavour, Path(self.folder, PROFILE.name)))

    def varnish(self, *page_seconds):
        return self.enterContext(engines.front(self.folder, self.shop.port, *page_seconds)).port

    def download(self, device, port, name):
        self.target.unlink(missing_ok=True)
        status = device.good(f"http://127.0.0.1/{name}", port, self.target, (1, 1))
        if status != 200:
            return str(status) if not self.target.exists() else "a file in spite of " + str(status)
        stored = self.target.read_bytes()
        page = PAGES[name][0].split(b"\r\n\r\n", 1)[1] if name == "of_20_mb" else PAGE
        if stored == page:
            return "right"
        return "zeros" if b"\0" * 500 in stored else "cut" if page.startswith(stored) else "wrong"

    def check_downloads(self, device, port, column, same):
        for line in DOWNLOADS.strip().splitlines()[1:]:
            name, expected = line.split()[0], line.split()[column]
            if expected != "-":
                with self.subTest(name, column=column):
                    seen = self.download(device, port, name)
                    self.assertTrue(same(seen, expected), (name, seen))

    def test_downloads(self):
        port = self.varnish()
        for flavour in FLAVOURS:
            device = self.device(flavour)
            self.check_downloads(device, self.shop.port, 1, str.__eq__)
            self.check_downloads(device, port, 2, str.__eq__)

    def test_downloads_through_nginx(self):
        front = self.enterContext(engines.nginx_front(self.folder, self.shop.port))
        broken = {"zeros", "cut", "wrong"}
        self.check_downloads(self.device(), front.port, 3,
                             lambda seen, expected: seen == expected or {seen, expected} <= broken)

    def test_purchases(self):
        port = self.varnish()
        for flavour in FLAVOURS:
            self.check_purchases(self.device(flavour), port, PURCHASES)

    def test_purchases_through_nginx(self):
        names = ("sold", "sold_apart", "lower_case_names", "overlong", "windows_1252", "short_body")
        front = self.enterContext(engines.nginx_front(self.folder, self.shop.port))
        self.check_purchases(self.device(), front.port, {name: PURCHASES[name] for name in names} | {
            "redirect": (302, (0, "", None)), "no_words": (503, FAILED)})

    def check_purchases(self, device, port, table):
        for name, (status, record) in table.items():
            with self.subTest(name):
                self.shop.requests.clear()
                seen = device.buy(f"http://127.0.0.1/{name}", port, (1, 1))
                self.assertEqual((seen[0], record and tuple(seen[1])), (status, record))
                self.assertEqual(len(self.shop.requests), 1, "asked once and not again")

    def test_verdict_of_the_doctor(self):
        port = self.varnish()
        for name in ("head_apart", "chunked", "long_head"):
            command = [BUILD / "linux/pavonix", "doctor", "--tries", "2", f"http://127.0.0.1/{name}", "--port"]
            verdicts = [subprocess.run([*command, str(place)], capture_output=True).returncode
                        for place in (self.shop.port, port)]
            self.assertEqual(verdicts, [8, 0], name)

    def test_one_segment_and_no_reset(self):
        """A purchase whose uncounted line end comes late, then a page: on one connection, which stays open."""
        port = self.varnish()
        with socket.create_connection(("127.0.0.1", port), timeout=10) as connection:
            connection.sendall(b"POST /sold HTTP/1.1\r\nHost: h\r\nContent-Length: 19\r\n\r\ntype=1&id=1&force=0")
            self.assertIn(b"Content-Length: 4\r\n", connection.recv(1024))
            connection.sendall(b"\r\n")
            connection.sendall(b"GET /in_pieces HTTP/1.1\r\nHost: h\r\n\r\n")
            self.assertTrue(connection.recv(65536).endswith(PAGE))
            state = connection.getsockopt(socket.IPPROTO_TCP, socket.TCP_INFO, 232)
            segments = struct.unpack_from("=I", state, DATA_SEGMENTS_IN)
            self.assertEqual(segments, (2,), "one for each reply")

    def test_pages_outlive_the_shop(self):
        port, device = self.varnish(0.05), self.device()
        self.assertEqual(self.download(device, port, "good"), "right")
        with mock.patch.dict(PAGES, good=PAGES["failed"]):
            self.check_old_page(device, port)
        self.shop.stop()
        self.check_old_page(device, port)
        self.assertEqual(self.download(device, port, "head_apart"), "503")
        status, record = device.buy("http://127.0.0.1/sold", port, (1, 1))
        self.assertEqual((status, tuple(record)), (503, FAILED))
        self.shop.start()
        engines.wait_until(lambda: self.download(device, port, "head_apart") == "right", "the shop's page")
        self.assertEqual(device.buy("http://127.0.0.1/sold", port, (1, 1))[0], 200)

    def check_old_page(self, device, port):
        for _ in range(3):
            time.sleep(0.1)  # no longer fresh
            self.assertEqual(self.download(device, port, "good"), "right")

    def test_a_page_is_asked_for_once(self):
        port = self.varnish()
        replies = at_once(*[lambda i=i: ask(port, "/in_pieces?x=1", User_Serial=str(i), Host=f"h{i}")
                            for i in range(20)])
        self.assertEqual(([body for _, body, _ in replies], len(self.shop.requests)), ([PAGE] * 20, 1))

    def fronts(self, page_seconds=10):
        nginx = self.enterContext(engines.nginx_front(self.folder, self.shop.port, page_seconds))
        return {"varnish": self.varnish(page_seconds), "nginx": nginx.port}

    def test_a_slow_page_makes_no_queue(self):
        """12 devices at once; beside them one whose page stops or drips. It ends with a failure, in time."""
        ports = list(self.fronts(1).values())
        seen = "/head_apart"
        for port in ports:
            ask(port, seen)
        time.sleep(2)  # no longer fresh
        with mock.patch.dict(PAGES, head_apart=PAGES["silent"]):
            replies = at_once(*[lambda port=port: ask(port, seen) for port in ports for _ in range(12)])
        print("old page:", sorted(round(seconds, 2) for *_, seconds in replies), flush=True)
        self.assertEqual({body for _, body, _ in replies}, {PAGE})
        self.assertLess(max(seconds for *_, seconds in replies), 5, "without waiting for the shop")
        pages = [(port, page) for port in ports for page in ["/silent"] * 12 + ["/stalls"]] + [(ports[0], "/drips")]
        replies = at_once(*[lambda port=port, page=page: ask(port, page) for port, page in pages])
        print("no page:", sorted(round(seconds, 2) for *_, seconds in replies), flush=True)
        self.assertNotIn(PAGE, [body for _, body, _ in replies])
        self.assertLess(max(seconds for *_, seconds in replies), 25, "not one after the other")

    def test_a_page_of_one_device_is_not_anothers(self):
        for name, port in self.fronts().items():
            for header in ("Cache-Control: private", "Cache-Control: no-store", "Cache-Control: max-age=0", "Vary: *",
                           "Cache-Control: no-cache, no-store, must-revalidate, max-age=0", "Vary: User-Serial",
                           "Set-Cookie: a=b"):
                page = "/echo?" + urllib.parse.quote(header)
                pages = [ask(port, page, User_Serial=serial)[1] for serial in ("ALICE", "BOB")]
                self.assertTrue(b"ALICE" in pages[0] and b"BOB" in pages[1], (name, header))
            for i, header in enumerate(("Cookie", "Authorization")):
                pages = [ask(port, f"/echo?A%3A{i}", **headers)[1] for headers in ({header: "ALICE"}, {header: "BOB"}, {})]
                self.assertEqual([b"ALICE" in page for page in pages], [True, False, False], (name, header))
            evil = {header: "evil" for header in ("Host", "X_Forwarded_Host", "X_Forwarded_For", "Forwarded", "X_Host",
                                                  "X_Original_URL", "X_Forwarded_Proto", "Origin", "User_Agent", "Via")}
            pages = [ask(port, "/echo?A%3A", **headers)[1] for headers in (evil, {})]
            self.assertNotIn(b"evil", pages[0] + pages[1], name)
            self.assertIn(b"Host: shop.internal\r\n", pages[1])

    def test_health_and_metrics_are_for_operators(self):
        for name, port in self.fronts().items():
            self.shop.requests.clear()
            self.assertEqual([ask(port, "/health")[0] for _ in range(2)], [200, 200])
            self.assertEqual(len(self.shop.requests), 2, "never an old one")
            replies = [ask(port, "/health", source="127.0.0.2")[0], ask(port, "/metrics")[0],
                       ask(port, "/fault/silent/shop/list")[0]]
            self.assertEqual((replies, len(self.shop.requests)), ([404 if name == "varnish" else 403, 404, 404], 2), name)

    def test_limits_are_off_until_they_are_wanted(self):
        def refused(port, *devices):
            replies = [ask(port, "/good", User_Serial=device, source=source)[0] for device, source in devices]
            self.assertLessEqual(set(replies), {200, 429})
            return replies.count(429)

        one, two, other = ("PX-1", "127.0.0.1"), ("PX-2", "127.0.0.1"), ("PX-1", "127.0.0.2")
        self.assertEqual(refused(self.varnish(), *[one] * 80), 0)
        shutil.rmtree(Path(self.folder, "front"))
        port = self.enterContext(engines.front(self.folder, self.shop.port, limits={"2000": "60"})).port
        self.assertEqual([refused(port, *each) for each in ([one] * 50, [two] * 20, [other] * 10)], [10, 10, 0])

    def test_purge(self):
        port = self.varnish()
        for _ in range(2):
            ask(port, "/good?a=1")
        ban = ["varnishadm", "-n", f"{self.folder}/front/run", "ban", "obj.status != 0"]
        subprocess.run(ban, check=True, capture_output=True)
        ask(port, "/good?a=1")
        self.assertEqual(len(self.shop.requests), 2)


if __name__ == "__main__":
    unittest.main()
