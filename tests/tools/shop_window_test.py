"""The shop's window, in a headless browser and by plain requests."""

import tempfile

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.support.ui import WebDriverWait

from shop_fixture import PROGRAMS, Key, ShopTest, run, time_text

KEY = Key()
EVIL = "<img src=x onerror=\"document.title='hit'\"><script>document.title='hit'</script>"


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
        # Changes by other programs are shown, too.
        run(f"{PROGRAMS}/pavonix-shop", "--db", self.database_file, "device", "top-up", "--serial", "PX-1",
            "--user-id", "42", "--amount", "5000")
        self.wait_for("#devices td", "58.01")
        self.assertTrue(self.browser.execute_script("return window.stayed"))

        self.browser.set_window_size(390, 800)
        width = self.browser.execute_script("return document.documentElement.scrollWidth - window.innerWidth")
        self.assertLessEqual(width, 0, "a phone would have to scroll sideways")

    def test_the_ninth_browser_is_told_that_the_page_is_full(self):
        viewers = [self.connect() for _ in range(8)]
        for viewer in viewers:
            viewer.sendall(b"GET /window/events HTTP/1.1\r\nHost: localhost\r\n\r\n")
            self.assertIn(b"200 OK", viewer.recv(64))
        self.browser = open_browser(self)
        self.browser.get(f"http://127.0.0.1:{self.port}/")
        self.wait_for("#state", "Eight browsers watch this page")
        for viewer in viewers:
            viewer.close()
        self.ask("GET", "/shop/good?type=1&id=1")  # an event, which the closed connections do not take
        WebDriverWait(self.browser, 15).until(lambda browser: browser.refresh() or "live" in self.texts("#state")[0])

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
        for _ in range(60):
            self.buy(7)
        page = self.ask("GET", "/")[2].decode()
        self.assertEqual(page.count("POST /shop/buy HTTP"), 50, "older exchanges are dropped")
        for words in ("POST /shop/buy", "<td>Notes</td>", 'http-equiv="refresh"'):
            self.assertIn(words, page)

    def test_access(self):
        self.assertEqual(self.ask("GET", "/", {"Host": "localhost:80"})[0], 200)
        for host in ("shop.example", "127.0.0.1.shop.example", "", "[::2]:80"):
            for path in ("/", "/window/events", "/window/script.js"):
                self.assertEqual(self.ask("GET", path, {"Host": host})[0], 403)
        self.assertEqual([self.ask("POST", "/")[0], self.ask("GET", "/window/x")[0]], [405, 404])
        self.assertEqual(len([line for line in self.stop_shop() if "/" in line]), 0, "views are not logged")
        self.start_shop("--window-for-all")
        status, headers, _ = self.ask("GET", "/", {"Host": "shop.example"})
        self.assertEqual(status, 200)
        self.assertIn("default-src 'none'", headers["Content-Security-Policy"])
