"""The shop's window, in a browser that nobody sees, and by hand."""

import http.client
import os
import re
import tempfile
import threading
import time
import unittest

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.support.ui import WebDriverWait

from shop_fixture import PROGRAMS, Key, ShopTest, run, time_text

KEY = Key()
EVIL = "<img src=x onerror=\"document.title='hit'\"><script>document.title='hit'</script>"
PICTURES = os.path.join(PROGRAMS, "pictures")


def open_browser(test, *more):
    folder = tempfile.TemporaryDirectory()
    test.addCleanup(folder.cleanup)
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for flag in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
                 "--disable-background-networking", "--disable-component-update", "--disable-sync",
                 "--disable-dev-shm-usage", f"--user-data-dir={folder.name}", *more):
        options.add_argument(flag)
    browser = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
    test.addCleanup(browser.quit)
    return browser


class WindowTest(ShopTest):
    def setUp(self):
        super().setUp()
        self.register(KEY.public_xml(), 1000)

    def buy(self, id_, token=None, serial="PX-1", path="/shop/buy"):
        return self.ask("POST", path, {"User-Serial": serial, "User-ID": "42", "User-Cert": token or KEY.token(time_text()),
                                       "Content-Type": "application/x-www-form-urlencoded"},
                        f"type=1&id={id_}&force=0")[0]

    def open_page(self, *flags):
        self.browser = open_browser(self, *flags)
        self.browser.get(f"http://127.0.0.1:{self.port}/")
        self.wait_for("#state", "live")

    def texts(self, selector):
        return self.browser.execute_script(
            "return [...document.querySelectorAll(arguments[0])].map((element) => element.textContent)", selector)

    def wait_for(self, selector, words):
        WebDriverWait(self.browser, 15).until(lambda _: any(words in text for text in self.texts(selector)))

    def test_what_happens_appears_without_reloading(self):
        self.open_page()
        self.browser.execute_script("window.stayed = true")
        self.assertEqual(self.buy(7), 200)
        self.wait_for("#purchases td", "Notes")
        self.wait_for("#devices td", "8.01")
        self.wait_for(".right > summary", "Notes (1/7) for PX-1, user 42")
        token = KEY.token("2026-1-2 3:4:5.678")
        self.assertEqual(self.buy(9, token), 403)
        self.wait_for(".refused > summary .code", "906: The clock of the device is off")
        steps = self.texts("#exchanges > :first-child ol.token > li")
        self.assertEqual((steps[0], len(steps)), ("User-Cert has 172 characters of base64: 128 bytes.", 5))
        self.assertEqual(steps[3], "Block 1 without OAEP (SHA-1, empty label): 2026-1-2 3:4:5.678")
        self.assertRegex(steps[4], r"said 2026-1-2 3:4:5\.678, \d+ seconds behind the shop's")
        self.assertIn(f"User-Cert: {token}\\r\\n", self.texts("#exchanges > :first-child pre")[0])

        self.assertEqual(self.buy(9, serial="PX-9"), 403)
        self.wait_for("ol.token .error", "device PX-9, user 42, is not registered")
        self.buy(5, Key(1024).token(time_text()))
        self.wait_for("ol.token .error", "made with another key")
        self.ask("GET", "/fault/head-apart/shop/good?type=3&id=5")
        self.wait_for(".wrong li.error", "The first packet did not hold")
        self.assertEqual(self.buy(9, path="/fault/long-message/shop/buy"), 403)
        self.wait_for(".refused > summary .code", "mmmm")
        # What other programs change shows, too.
        run(f"{PROGRAMS}/pavonix-shop", "--db", self.database_file, "device", "top-up", "--serial", "PX-1",
            "--user-id", "42", "--amount", "5000")
        self.wait_for("#devices td", "58.01")
        self.assertTrue(self.browser.execute_script("return window.stayed"))

        os.makedirs(PICTURES, exist_ok=True)
        for name, size in (("shop_window", (1200, 900)), ("shop_window_phone", (390, 800))):
            self.browser.set_window_size(*size)
            self.browser.execute_script("document.querySelectorAll('.exchange')[3].open = true")
            self.browser.save_screenshot(os.path.join(PICTURES, name + ".png"))
        width = self.browser.execute_script("return document.documentElement.scrollWidth - window.innerWidth")
        self.assertLessEqual(width, 0, "a phone would have to scroll sideways")

    def test_the_ninth_browser_learns_that_the_page_is_full(self):
        for _ in range(8):
            viewer = self.connect()
            viewer.sendall(b"GET /window/events HTTP/1.1\r\nHost: localhost\r\n\r\n")
            self.assertIn(b"200 OK", viewer.recv(64))
        self.browser = open_browser(self)
        self.browser.get(f"http://127.0.0.1:{self.port}/")
        self.wait_for("#state", "Eight browsers watch this page")

    def test_hostile_texts_stay_texts(self):
        self.query("UPDATE good SET title = ?, maker = ? WHERE type = 1 AND id = 1", EVIL, "\x1b[2J\u202e" + EVIL)
        self.query("INSERT INTO device SELECT ?, 1, public_key, 0 FROM device", EVIL)
        self.open_page()
        self.ask("GET", "/shop/good?" + EVIL.replace(" ", "%20"), {"User-Serial": EVIL, "User-ID": "\"'><b>"})
        self.ask("GET", "/shop/good?type=1&id=1")
        self.buy("7\nevent: shop\ndata: gone", serial=EVIL, token=EVIL + "{{shop}}")
        self.wait_for("#exchanges pre", "{{shop}}")
        self.browser.refresh()
        self.wait_for("#state", "live")
        self.assertIn(EVIL, self.texts("#goods td"))
        self.assertIn(EVIL, self.texts("#devices td"))
        self.assertIn("\\x1b[2J", " ".join(self.texts("#goods td")))
        self.assertEqual(self.texts("main img, main script, main b b"), [])
        self.assertEqual(self.browser.title, "Pavonix shop")

    def test_without_scripts(self):
        self.buy(7)
        page = self.ask("GET", "/")[2].decode()
        for words in ("POST /shop/buy", "<td>Notes</td>", 'http-equiv="refresh"'):
            self.assertIn(words, page)

    def test_who_may_look(self):
        self.assertEqual(self.ask("GET", "/", {"Host": "localhost:80"})[0], 200)
        for host in ("shop.example", "127.0.0.1.shop.example", "", "[::2]:80"):
            for path in ("/", "/window/events", "/window/script.js"):
                self.assertEqual(self.ask("GET", path, {"Host": host})[0], 403)
        self.assertEqual([self.ask("POST", "/")[0], self.ask("GET", "/window/x")[0]], [405, 404])
        self.assertEqual(len([line for line in self.stop_shop() if "/" in line]), 0, "looking is no business")
        self.start_shop("--window-for-all")
        status, headers, _ = self.ask("GET", "/", {"Host": "shop.example"})
        self.assertEqual(status, 200)
        self.assertIn("default-src 'none'", headers["Content-Security-Policy"])

    def resident_kilobytes(self):
        with open(f"/proc/{self.shop.pid}/status") as file:
            return int(re.search(r"VmRSS:\s+(\d+)", file.read())[1])

    def test_nothing_piles_up(self):
        """Neither exchanges, nor viewers that read nothing, nor more of them than there is room for."""
        threading.Thread(target=self.shop.stdout.read, daemon=True).start()  # nobody else reads the log
        viewers = []
        for _ in range(10):
            viewer = self.connect()
            viewer.sendall(b"GET /window/events HTTP/1.1\r\nHost: localhost\r\n\r\n")
            viewers.append(viewer)
        self.assertEqual(sorted(viewer.recv(12)[-3:] for viewer in viewers), [b"200"] * 8 + [b"503"] * 2)
        filler = {"Filler": "x" * 7000}

        def exchanges(count):
            for _ in range(count):
                self.assertEqual(self.ask("POST", "/shop/buy", filler, "x" * 15000)[0], 415)
            return self.resident_kilobytes()

        first = exchanges(200)
        self.assertLess(exchanges(1800) - first, 20 * 1024)
        for viewer in viewers:
            viewer.close()
        self.wait_until_served()

    def wait_until_served(self):
        """Those that left make room again."""
        for _ in range(100):
            connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=5)
            connection.request("GET", "/window/events")
            status = connection.getresponse().status
            connection.close()
            if status == 200:
                return
            time.sleep(0.05)
        self.fail("no room for another viewer")
