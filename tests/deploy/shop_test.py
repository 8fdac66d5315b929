"""The shop application of deploy/shop answers as the sample shop does, over SQLite and over PostgreSQL."""

import http.client
import os
import shutil
import subprocess
import sys
import unittest
import xml.etree.ElementTree as ElementTree
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

TESTS = Path(__file__).resolve().parents[1]
sys.path[:0] = [str(TESTS / "tools"), str(TESTS.parent / "tools/demo")]
os.environ.setdefault("PAVONIX_PROGRAMS", str(TESTS.parent / "build/linux"))
import engines
from shop_fixture import PROGRAMS, Key, ShopTest, run, time_text

KEY = Key()
LIST = "/shop/list?type={}&category={}&sort={}&start={}&max={}"
FORM = "application/x-www-form-urlencoded"

CATALOGUE = [LIST.format(*values) for values in (
    (1, 0, 0, 0, 100), (1, 0, 1, 2, 3), (3, 0, 2, 0, 9), (2, 2, 3, 0, 9), (2, 0, 4, 1, 2), (3, 0, 0, 7, 5),
    (9, 0, 0, 0, 1), (1, 9, 0, 0, 1), (1, 0, 5, 0, 1), (1, 0, -1, 0, 1), (1, 0, 0, 0, 0), (1, 0, 0, 0, 101),
    (1, 0, 0, 2**31, 1), (1, 0, 0, "", 1), (1, 0, 0, "1x", 1), (1, 0, 0, "%31%", 1), ("%31", 0, 0, 0, 1), (1, 0, 0, 0, "1&max=1"))] + [
    "/shop/good?type=3&id=5", "/shop/good?id=5&type=3", "/shop/good?type=2&id=5", "/shop/good?type=1&id=99",
    "/shop/good?type=1", "/shop/good?type=1&id=1&x=1", "/shop/good", "/shop/goods?type=1&id=1", "/shop",
    "/shop/buy"]


class ShopApplicationTest(ShopTest):
    def setUp(self):
        super().setUp()
        key = Path(self.folder, "device.pub")
        key.write_text(KEY.public_xml())
        done = run(f"{PROGRAMS}/pavonix-shop", "device", "add", "--db", self.database_file, "--serial", "PX-1",
                   "--user-id", "42", "--public-key", str(key), "--balance", "1000")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.databases = {"sqlite": Path(self.folder, "copy.db"), "postgresql": self.enterContext(
            engines.PostgreSQL(self.folder)).url}
        shutil.copy(self.database_file, self.databases["sqlite"])
        subprocess.run([engines.PYTHON, engines.DEPLOY / "shop/move_to_server.py", self.database_file,
                        self.databases["postgresql"]], check=True)
        self.ports = [self.port] + [self.start_application(name) for name in self.databases]

    def start_application(self, name, number=0):
        engine = engines.application(self.folder, f"{name}{number}", self.databases[name])
        return self.enterContext(engine).port

    def verdicts(self, method, target, headers=None, body=None):
        """What the sample shop and the application over each database answer: status, code and document."""
        for self.port in self.ports:
            status, headers_back, body_back = self.ask(method, target, headers, body)
            root = ElementTree.fromstring(body_back)
            root.attrib.pop("at", None)
            for element in root.iter():
                element.text, element.tail = (element.text or "").split(": ")[0].strip(), None
            yield (status, headers_back["X-Error-Code"], (headers_back["X-Error-Message"] or "").split(": ")[0],
                   bool(headers_back["X-Server-Timestamp"]), ElementTree.tostring(root, encoding="unicode"))

    def check_same(self, *request):
        sample, *others = self.verdicts(*request)
        for other in others:
            self.assertEqual(other, sample)
        return sample

    def buy(self, token=None, good="type=1&id=7&force=0", **changes):
        headers = {"User-Serial": "PX-1", "User-ID": "42", "User-Cert": token or KEY.token(time_text()),
                   "Content-Type": FORM} | {name.replace("_", "-"): value for name, value in changes.items()}
        return "POST", "/shop/buy", {name: value for name, value in headers.items() if value is not None}, good

    def test_answers_are_the_sample_shops(self):
        for target in CATALOGUE:
            with self.subTest(target):
                self.check_same("GET", target)
        self.check_same("POST", "/shop/list", {"Content-Type": FORM}, "")
        used, refused = KEY.token(time_text()), KEY.token(time_text())
        table = [
            (200, self.buy(used)), (907, self.buy(used, "type=1&id=9&force=0")), (908, self.buy()),
            (200, self.buy(good="type=1&id=7&force=%2D1")), (903, self.buy(refused, "type=1&id=99&force=0")),
            (907, self.buy(refused, "type=1&id=9&force=0")), (909, self.buy(good="type=3&id=7&force=0")),
            (901, self.buy(good="type=1&id=7")), (901, self.buy(good="type=1&id=7&force=0&more=1")),
            (901, self.buy(User_ID="me")), (901, self.buy(User_Cert=None)), (904, self.buy(User_Serial="PX-2")),
            (904, self.buy(User_ID="43")), (905, self.buy("*" * 172)), (905, self.buy(User_Cert="")),
            (905, self.buy(Key().token(time_text()))), (905, self.buy(KEY.token("hello"))),
            (906, self.buy(KEY.token(time_text(310)))), (906, self.buy(KEY.token(time_text(-310)))),
            (200, self.buy(KEY.token(time_text(-290)), "type=1&id=9&force=0")),
            (913, self.buy(Content_Type="text/plain")), (912, self.buy(good="x" * 17000)),
        ]
        for code, request in table:
            with self.subTest(code, form=request[3][:30], headers=request[2]):
                status, answered = self.check_same(*request)[:2]
                self.assertEqual(int(answered or status), code)

    def test_servers_are_as_safe_as_one(self):
        """Of purchases at the same time at two servers one is sold: with one token, and with one good unowned."""
        for name in self.databases:
            ports = [self.start_application(name, number) for number in (1, 2)]
            token = KEY.token(time_text())
            for requests, code in (([self.buy(token, f"type=1&id={i}&force=0") for i in (1, 9) * 8], 907),
                                   ([self.buy(good="type=1&id=10&force=0") for _ in range(16)], 908)):
                codes = sorted(self.at_once(ports, requests))
                self.assertEqual(codes, [0] + [code] * 15, name)

    def at_once(self, ports, requests):
        def post(i):
            connection = http.client.HTTPConnection("127.0.0.1", ports[i % 2], timeout=30)
            self.addCleanup(connection.close)
            connection.request(*requests[i][:2], requests[i][3], {**requests[i][2], "Connection": "close"})
            return int(connection.getresponse().headers["X-Error-Code"] or 0)

        with ThreadPoolExecutor(len(requests)) as pool:
            return list(pool.map(post, range(len(requests))))


if __name__ == "__main__":
    unittest.main()
