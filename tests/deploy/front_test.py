"""What the devices get from an awkward shop: as it is, through Varnish and through nginx."""

import os
import shutil
import socket
import ssl
import struct
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import urllib.request
from pathlib import Path
from unittest import mock

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools/demo"))
import engines
from awkward_shop import PAGE, PAGES, VERDICTS, AwkwardShop
from caller import BUILD, Caller

FLAVOURS = os.environ["PAVONIX_FLAVOURS"].split(",")
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
redirect_to_itself      301     502      301
of_20_mb                right   right    right
interim                 103     503      -
empty                   zeros   502      zeros
other_coding            right   503      right
cut                     cut     503      -
not_http                0       503      0
no_words                0       503      502
failed                  500     503      500
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
    "utf8": (403, (17, " a%C3%BC=FC \u00c3\u00bc ?? ??", None)),
    "windows_1252": (403, (17, " Grüße, 5 €", None)),
    "html": (403, FAILED),
    "short_html": (403, FAILED),
    "short_body": (403, (0, "closed today", None)),
    "redirect": (502, FAILED),
    "no_words": (503, FAILED),
}


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
                    self.assertTrue(same(self.download(device, port, name), expected), name)

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
            "redirect": (302, (0, "", None)), "no_words": (502, None)})

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

    def test_every_letter_of_the_code_page(self):
        letters = "".join(bytes([i]).decode("cp1252", "ignore") for i in range(0x20, 0x100) if i != 0x7F)
        VERDICTS["letters"] = [b"HTTP/1.1 403 No\r\nX-Error-Code: 1\r\nX-Error-Message: %s\r\nContent-Length: 0\r\n\r\n"
                               % letters.strip().encode()]
        record = self.device().buy("http://127.0.0.1/letters", self.varnish(), (1, 1))[1]
        self.assertEqual(record.message, " " + letters.strip())

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

    def test_the_balancer_repeats_pages_and_no_purchase(self):
        authority = engines.Authority(self.folder)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(*authority.sign("server"))
        shops = [self.enterContext(AwkwardShop(context)) for _ in range(2)]
        balancer = self.enterContext(engines.balancer(self.folder, [shop.port for shop in shops], authority))
        port, device = self.enterContext(engines.front(self.folder, balancer.port)).port, self.device()
        engines.wait_until(lambda: self.download(device, port, "good") == "right", "the servers")

        def asked(method):
            start = method + b" /no_words"
            return [request for shop in shops for request in shop.requests if request.startswith(start)]

        status, record = device.buy("http://127.0.0.1/no_words", port, (1, 1))
        self.assertIn(status, (502, 503))  # as HAProxy says so, or only hangs up
        self.assertEqual((tuple(record), len(asked(b"POST"))), (FAILED, 1))
        self.assertEqual(self.download(device, port, "no_words"), "503")
        self.assertGreater(len(asked(b"GET")), 1)

    def check_old_page(self, device, port):
        for _ in range(3):
            time.sleep(0.1)  # no longer fresh
            self.assertEqual(self.download(device, port, "good"), "right")

    def test_a_page_is_asked_for_once(self):
        port, replies = self.varnish(), []

        def ask(i):
            request = urllib.request.Request(f"http://127.0.0.1:{port}/in_pieces?x=1",
                                             headers={"User-Serial": str(i), "Host": f"h{i}", "Cookie": f"a={i}"})
            with urllib.request.urlopen(request) as reply:
                replies.append(reply.read())

        threads = [threading.Thread(target=ask, args=(i,)) for i in range(20)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual((replies, len(self.shop.requests)), ([PAGE] * 20, 1))


if __name__ == "__main__":
    unittest.main()
