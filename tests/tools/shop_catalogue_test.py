"""The sample shop's catalogue, requested by curl, by Python and by plain sockets."""

import subprocess
import xml.etree.ElementTree as ElementTree

from shop_fixture import ShopTest

LIST = "/shop/list?type={}&category={}&sort={}&start={}&max={}"


class CatalogueTest(ShopTest):
    def page(self, *values):
        status, headers, body = self.ask("GET", LIST.format(*values))
        self.assertEqual((status, headers["Content-Type"]), (200, "text/xml; charset=utf-8"))
        self.assertTrue(body.startswith(b'<?xml version="1.0" encoding="UTF-8"?>'))
        return ElementTree.fromstring(body)

    def ids(self, *values):
        return [int(good.get("id")) for good in self.page(*values)]

    def test_sort_orders(self):
        goods = self.query("SELECT id, title, price, added FROM good WHERE type = 2")
        by_id = sorted(goods)
        keys = {1: lambda good: good[1].upper(), 2: lambda good: good[2]}
        backwards = {3: lambda good: good[2], 4: lambda good: good[3]}
        orders = {0: by_id} | {sort: sorted(by_id, key=key) for sort, key in keys.items()} | {
            sort: sorted(by_id, key=key, reverse=True) for sort, key in backwards.items()}
        for sort, expected in orders.items():
            with self.subTest(sort=sort):
                self.assertEqual(self.ids(2, 0, sort, 0, 100), [good[0] for good in expected])

    def test_pages_are_complete(self):
        whole = self.ids(3, 0, 3, 0, 100)
        self.assertEqual(len(whole), 7)
        self.assertEqual(sum((self.ids(3, 0, 3, start, 3) for start in (0, 3, 6)), []), whole)
        for start in (7, 2**31 - 1):
            page = self.page(3, 0, 3, start, 3)
            self.assertEqual((len(page), page.get("total"), page.get("start")), (0, "7", str(start)))

    def test_category_and_texts(self):
        rows = self.query("SELECT id, title, maker, price, added FROM good WHERE type = 1 AND category = 1 ORDER BY id")
        page = self.page(1, 1, 0, 0, 100)
        shown = [(int(good.get("id")), good.findtext("title"), good.findtext("maker"), int(good.findtext("price")),
                  good.findtext("added")) for good in page]
        self.assertEqual(shown, rows)
        self.assertIn("Mine <Field>", [good.findtext("title") for good in page])
        self.assertEqual({good.find("category").text for good in page}, {"Games"})

    def test_single_goods(self):
        for type_, id_, title, description in self.query("SELECT type, id, title, description FROM good"):
            status, _, body = self.ask("GET", f"/shop/good?id={id_}&type={type_}")
            good = ElementTree.fromstring(body)
            self.assertEqual((status, good.findtext("title"), good.findtext("description")), (200, title, description))

    def test_wrong_requests(self):
        good_list = LIST.format(1, 0, 0, 0, 10)
        table = [
            ("GET", "/shop", 404, 900), ("GET", "/shop/list/", 404, 900), ("GET", "/shop/goods?type=1&id=1", 404, 900),
            ("GET", "/shop/list", 400, 901), ("GET", good_list + "&max=10", 400, 901),
            ("GET", good_list + "&x=1", 400, 901), ("GET", good_list.replace("sort", "Sort"), 400, 901),
            ("GET", LIST.format(1, 0, 5, 0, 10), 400, 901), ("GET", LIST.format(1, 0, -1, 0, 10), 400, 901),
            ("GET", LIST.format(1, 0, 0, -1, 10), 400, 901), ("GET", LIST.format(1, 0, 0, 0, 0), 400, 901),
            ("GET", LIST.format(1, 0, 0, 0, 101), 400, 901), ("GET", LIST.format(1, 0, 0, 2**31, 10), 400, 901),
            ("GET", LIST.format(1, 0, 0, "", 10), 400, 901), ("GET", LIST.format(1, 0, 0, "1x", 10), 400, 901),
            ("GET", LIST.format(1, 0, 0, "%31%", 10), 400, 901), ("GET", LIST.format(0, 0, 0, 0, 10), 400, 901),
            ("GET", LIST.format(9, 0, 0, 0, 10), 404, 902), ("GET", LIST.format(1, 4, 0, 0, 10), 404, 902),
            ("GET", "/shop/good?type=1&id=99", 404, 903), ("GET", "/shop/good?type=9&id=1", 404, 903),
            ("GET", "/shop/good?type=1", 400, 901), ("GET", "/shop/good?type=1&id=%0d%0aX-A:1", 400, 901),
            ("POST", good_list, 405, 910), ("HEAD", "/shop/good?type=1&id=1", 405, 910), ("GET", "/shop/buy", 405, 910),
        ]
        for method, target, status, code in table:
            with self.subTest(target=target):
                seen, headers, _ = self.ask(method, target)
                self.assertEqual((seen, headers["X-Error-Code"]), (status, str(code)))
                self.assertTrue(0 < len(headers["X-Error-Message"]) < 255)
                self.assertIsNone(headers["X-Server-Timestamp"])
        self.assertEqual(self.ask("GET", LIST.format("%31", 0, 0, 0, 10))[0], 200)

        log = self.stop_shop()
        self.assertEqual(len(log), len(table) + 1)
        self.assertRegex(log[0], r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} 127\.0\.0\.1 GET /shop 404 \d+ bytes, code 900: ")


class WireTest(ShopTest):
    """The bytes of replies, and malformed or slow requests."""

    TARGETS = ["/shop/good?type=3&id=5", LIST.format(1, 0, 0, 0, 100), "/shop/good?type=1&id=1", "/shop/good?type=1"]

    def test_first_reception_holds_head_and_body(self):
        for target in self.TARGETS:
            whole = subprocess.check_output(["curl", "-si", f"http://127.0.0.1:{self.port}{target}"])
            self.assertLessEqual(whole.index(b"\r\n\r\n") + 4, 1024)
            for _ in range(25):
                connection = self.connect()
                connection.sendall(f"GET {target} HTTP/1.1\r\nHost: h\r\nConnection: Keep-Alive\r\n\r\n".encode())
                received = connection.recv(1024)
                self.assertEqual(received, whole[:1024])
                while piece := connection.recv(65536):
                    received += piece
                self.assertEqual(received, whole)

    def exchange(self, *pieces, finish=False):
        connection = self.connect()
        connection.settimeout(5)
        for piece in pieces:
            connection.sendall(piece)
        if finish:
            connection.shutdown(1)
        received = b""
        while piece := connection.recv(65536):
            received += piece
        return received

    def test_malformed_requests(self):
        post = b"POST /shop/buy HTTP/1.1\r\nHost: h\r\n"
        table = [
            ("no request", [b"hello\r\n\r\n"], b"400", b"914"),
            ("an empty target", [b"GET  HTTP/1.1\r\n\r\n"], b"400", b"914"),
            ("a body cut short", [post, b"Content-Length: 20\r\n\r\ntype=1"], b"400", b"914"),
            ("bytes above ASCII", [b"GET /\x9b2J HTTP/1.1\r\n\r\n"], b"404", b"900"),
            ("a length beyond numbers", [post, b"Content-Length: 99999999999999999999\r\n\r\n"], b"400", b"914"),
            ("no length", [post, b"\r\n"], b"411", b"911"),
            ("chunks", [post, b"Transfer-Encoding: chunked\r\n\r\n0\r\n\r\n"], b"411", b"911"),
            ("a body too long", [post, b"Content-Length: 99999\r\n\r\n", b"x" * 99999], b"413", b"912"),
            ("a head too long", [b"GET / HTTP/1.1\r\nA: ", b"a" * 9000], b"413", b"912"),
        ]
        for name, pieces, status, code in table:
            with self.subTest(name):
                reply = self.exchange(*pieces, finish=True)
                self.assertEqual(reply.split(b" ", 2)[1], status)
                self.assertIn(b"\r\nX-Error-Code: " + code + b"\r\n", reply)
        self.assertEqual(self.exchange(finish=True), b"")
        self.assertEqual(self.ask("GET", "/shop/good?type=1&id=1")[0], 200)
        self.assertTrue(all(line.isascii() for line in self.stop_shop()))

    def test_bytes_after_the_request_are_ignored(self):
        request = b"GET /shop/good?type=3&id=5 HTTP/1.1\r\nHost: h\r\n\r\n"
        for rest in (b"\r\n", request, b"x" * 300000):
            with self.subTest(rest=len(rest)):
                reply = self.exchange(request, rest, finish=True)
                self.assertEqual(reply.count(b"HTTP/1.1 "), 1)
                self.assertTrue(reply.endswith(b"</good>\n"))

    def test_a_slow_client_does_not_block_others(self):
        slow = self.connect()
        slow.sendall(b"GET /shop/good?type=1&id=1 HT")
        self.assertEqual(self.ask("GET", "/shop/good?type=1&id=1")[0], 200)
        slow.sendall(b"TP/1.1\r\n\r\n")
        self.assertTrue(slow.recv(1024).startswith(b"HTTP/1.1 200 "))
