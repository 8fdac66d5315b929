"""Purchases from the sample shop, with tokens made by Python from keys of openssl."""

import base64
import hashlib
import os
import random
import subprocess
import sys
import threading
import time
from http.client import HTTPException

from shop_fixture import HERE, PROGRAMS, Key, ShopTest, run, time_text

sys.path.append(os.path.join(HERE, "../../examples/python"))
import verify_token

KEY = Key()


class PurchaseTest(ShopTest):
    def setUp(self):
        super().setUp()
        self.assertIn("1024 bits", self.add_device(KEY.public_xml(), 1000))

    def add_device(self, *arguments):
        done = self.register(*arguments)
        return done.stdout if done.returncode == 0 else done.stderr

    def buy(self, type_=1, id_=7, force=0, token=None, **changes):
        """Returns status and code; each keyword replaces a header, None leaves it out."""
        headers = {"User-Serial": "PX-1", "User-ID": "42", "User-Cert": token or KEY.token(time_text()),
                   "Content-Type": "application/x-www-form-urlencoded"}
        headers.update({name.replace("_", "-"): value for name, value in changes.items()})
        headers = {name: value for name, value in headers.items() if value is not None}
        status, self.headers, body = self.ask("POST", "/shop/buy", headers, f"type={type_}&id={id_}&force={force}")
        self.body = body.decode()
        return status, int(self.headers["X-Error-Code"] or 0)

    def balance(self):
        return self.query("SELECT balance FROM device WHERE serial = 'PX-1'")[0][0]

    def test_accepted(self):
        self.assertEqual(self.buy(), (200, 0))
        self.assertIn('number="1" type="1" id="7" price="199"', self.body)
        self.assertEqual(self.buy(1, 9, token=KEY.token(time_text(fraction="-042"))), (200, 0))
        self.assertEqual(self.buy(force="%2D1"), (200, 0))
        self.assertEqual(self.balance(), 1000 - 199 - 99 - 199)
        listed = run(f"{PROGRAMS}/pavonix-shop", "--db", self.database_file, "purchases").stdout.splitlines()
        self.assertEqual([line.split("\t")[:6] for line in listed[1:]],
                         [["1", "PX-1", "42", "1", "7", "199"], ["2", "PX-1", "42", "1", "9", "99"],
                          ["3", "PX-1", "42", "1", "7", "199"]])

    def test_refused(self):
        token = KEY.token(time_text())
        raw = base64.b64decode(token)
        changed = base64.b64encode(bytes([raw[0] ^ 1]) + raw[1:]).decode()
        beyond = base64.b64encode((KEY.n + 1).to_bytes(KEY.size, "big")).decode()
        odd_texts = ["hello", time_text() + " ", "2026-02-30 1:2:3.004", "2026-1-1 24:0:0.000", "2026-01-1 1:1:1.001"]
        table = [
            ("another serial", dict(User_Serial="PX-2"), (403, 904)), ("another user", dict(User_ID="43"), (403, 904)),
            ("no serial", dict(User_Serial=None), (400, 901)), ("user in words", dict(User_ID="me"), (400, 901)),
            ("no token header", dict(User_Cert=None), (400, 901)), ("empty token", dict(User_Cert=""), (403, 905)),
            ("no base64", dict(User_Cert="*" * 172), (403, 905)), ("cut", dict(User_Cert=token[:-4]), (403, 905)),
            ("space before the padding's end", dict(User_Cert=token[:-1] + " ="), (403, 905)),
            ("one bit off", dict(User_Cert=changed), (403, 905)), ("above modulus", dict(User_Cert=beyond), (403, 905)),
            ("another key", dict(User_Cert=Key().token(time_text())), (403, 905)),
            ("another digest", dict(User_Cert=KEY.token(time_text(), hashlib.md5)), (403, 905)),
            ("plain text", dict(Content_Type="text/plain"), (415, 913)),
            ("unknown good", dict(id_=99), (404, 903)), ("no number", dict(id_="x"), (400, 901)),
            ("dear", dict(type_=3, id_=7), (402, 909)), ("one field more", dict(force="0&more=1"), (400, 901)),
        ] + [(f"text {text!r}", dict(User_Cert=KEY.token(text)), (403, 905)) for text in odd_texts]
        for name, changes, expected in table:
            with self.subTest(name):
                self.assertEqual(self.buy(**changes), expected)
                self.assertTrue(0 < len(self.headers["X-Error-Message"]) < 255)
                self.assertIsNone(self.headers["X-Server-Timestamp"])
        self.assertEqual((self.balance(), self.query("SELECT * FROM purchase")), (1000, []))

    def test_the_python_verifier_agrees(self):
        year = time.localtime().tm_year
        clock = time_text()
        texts = [clock, clock[:-3] + "-999", clock[:-3] + "-000", clock[:-3] + "1234", clock[:-3] + "42", clock + "\n", " " + clock,
                 f"0{clock}", f"{year}-01-1 1:1:1.001", f"{year}-1-1 01:1:1.001", f"{year}-1-1 0:0:0.000", f"{year}-1-1 00:0:0.000",
                 f"{year}-2-29 1:1:60.000", f"{year}-1-1 24:0:0.000", f"{year}-0-1 1:1:1.001", f"{year}-13-1 1:1:1.001",
                 "10000-1-1 1:1:1.001", "99999-1-1 1:1:1.001", "0-1-1 1:1:1.001", "1-1-1 1:1:1.001", "-5-1-1 1:1:1.001",
                 f"+{clock}", f"{year}-1-1 1:1:1,001", f"{year}-1-1  1:1:1.001", f"{year}-1-1T1:1:1.001", f"{year}-1-1 1:1:1.+01"]
        verdicts = {}
        for text in texts:
            try:
                verify_token.parse_time(verify_token.open_token(KEY.token(text), KEY.n, KEY.e)[0])
                genuine = True
            except verify_token.NotGenuine:
                genuine = False
            verdicts[text] = (genuine, self.buy(force=1, token=KEY.token(text))[1] != 905)
        self.assertEqual([text for text, (python, shop) in verdicts.items() if python != shop], [])
        self.assertEqual({python for python, _ in verdicts.values()}, {True, False})

    def test_owned_goods(self):
        self.assertEqual(self.buy(), (200, 0))
        self.assertEqual(self.buy(), (409, 908))
        self.add_device(KEY.public_xml(), 199, "PX-2")
        self.assertEqual(self.buy(User_Serial="PX-2"), (200, 0))
        self.assertEqual(self.buy(force=1), (200, 0))
        self.assertEqual(self.buy(User_Serial="PX-2", force=1), (402, 909))

    def test_replayed(self):
        token = KEY.token(time_text())
        self.assertEqual(self.buy(token=token), (200, 0))
        self.assertEqual(self.buy(token=token, id_=9), (403, 907))
        refused = KEY.token(time_text())
        self.assertEqual(self.buy(token=refused, id_=99), (404, 903))
        self.assertEqual(self.buy(token=refused, id_=9), (403, 907))
        log = self.stop_shop()
        self.assertEqual(log, sorted(log))
        self.assertRegex(log[0], r"/shop/buy 200 .*, serial PX-1, user 42, type=1&id=7&force=0, code 0: sold$")
        self.assertRegex(log[1], r"/shop/buy 403 .*, serial PX-1, user 42, type=1&id=9&force=0, code 907: The token")
        self.start_shop()
        self.assertEqual(self.buy(token=token, id_=9), (403, 907))
        self.assertEqual(self.balance(), 1000 - 199)

    def test_clock(self):
        for offset in (-290, 290):
            self.assertEqual(self.buy(force=1, token=KEY.token(time_text(offset))), (200, 0))
        for offset in (-310, 310, -86400, 366 * 86400):
            self.assertEqual(self.buy(force=1, token=KEY.token(time_text(offset))), (403, 906))
            self.assertRegex(self.headers["X-Server-Timestamp"], r"^\d{4}-\d+-\d+ \d+:\d+:\d+\.\d{3}$")
            stamp = self.headers["X-Server-Timestamp"].split(".")[0]
            self.assertLess(abs(time.mktime(time.strptime(stamp, "%Y-%m-%d %H:%M:%S")) - time.time()), 3)
        self.stop_shop()
        self.start_shop("--max-skew", "10")
        self.assertEqual(self.buy(force=1, token=KEY.token(time_text(-20))), (403, 906))

    def test_keys_of_other_sizes(self):
        for bits, form in ((512, "xml"), (1023, "pem"), (2048, "xml")):
            with self.subTest(bits=bits):
                key = Key(bits)
                self.add_device(key.public_xml() if form == "xml" else key.public_pem.decode(), 1000)
                self.assertEqual(self.buy(force=1, token=key.token(time_text())), (200, 0))
                self.assertEqual(self.buy(force=1), (403, 905))

    def test_invalid_public_keys(self):
        private_pem = subprocess.check_output(["openssl", "genrsa", "1024"], stderr=subprocess.DEVNULL).decode()
        table = [("", "neither"), ("<a", "neither"), ("<a/>", "no usable"), (KEY.private_xml(), "private"),
                 (KEY.public_xml().replace("AQAB", "A*AB"), "Exponent"), (private_pem, "no RSA public key")]
        for text, words in table:
            with self.subTest(words):
                self.assertIn(words, self.add_device(text, 0, "PX-9", 1))
        self.assertEqual(self.query("SELECT count(*) FROM device"), [(1,)])

    def test_killed_while_selling(self):
        """A purchase with a reply is stored; one without is stored completely or not at all."""
        accepted = []

        def buy_until_dead():
            while True:
                try:
                    accepted.append(self.buy(1, 9, force=1)[0])
                except (OSError, HTTPException):
                    return

        self.query("UPDATE device SET balance = 1000000")
        for _ in range(4):
            buyers = [threading.Thread(target=buy_until_dead) for _ in "123"]
            for buyer in buyers:
                buyer.start()
            time.sleep(random.uniform(0.2, 0.5))
            self.shop.kill()
            for buyer in buyers:
                buyer.join()
            self.stop_shop()
            self.start_shop()
        self.assertEqual((set(accepted), self.query("PRAGMA integrity_check")), ({200}, [("ok",)]))
        [(purchases, paid)] = self.query("SELECT count(*), sum(price) FROM purchase")
        [(tokens,)] = self.query("SELECT count(*) FROM token")
        self.assertEqual((tokens, self.balance()), (purchases, 1000000 - paid))
        self.assertTrue(len(accepted) <= purchases <= len(accepted) + 3 * 4)
        self.assertEqual(self.buy(), (200, 0))
