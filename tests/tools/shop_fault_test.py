"""The shop's faults: the library's result of each, compared with the list of `pavonix-shop faults`."""

import ctypes
import gzip
import multiprocessing
import os
import re

from shop_fixture import PROGRAMS, Key, ShopTest, run

KEY = Key()
SHOP = f"{PROGRAMS}/pavonix-shop"
NUMBERS = {"list": (1, 0, 0, 0, 100), "good": (3, 5), "sale": (1, 7, 1), "refusal": (1, 99, 0)}


class Record(ctypes.Structure):
    _fields_ = [("reserved", ctypes.c_int * 2), ("code", ctypes.c_int), ("texts", ctypes.c_uint16 * 1280)]


def call_library(kind, profile, target, url, port):
    """Runs in its own process, because the library is not reentrant; returns the status, code and message."""
    def wide(text):
        return ctypes.create_string_buffer(text.encode("utf-16-le") + bytes(2))

    library = ctypes.CDLL(f"{PROGRAMS}/libpavonix.so")
    numbers = (0, 0) + NUMBERS[kind]
    request = (ctypes.c_int * len(numbers))(*numbers)
    if kind in ("sale", "refusal"):
        record = Record(code=-1)
        status = library.GetBuyGood(wide(profile), request, ctypes.byref(record), wide(url), port)
        return status, record.code, bytes(record.texts).decode("utf-16-le").split("\0")[0]
    function = library.GetGoodListXml if kind == "list" else library.GetOneGoodXml
    return function(wide(profile), request, wide(target), 1, wide(url), port), None, ""


def listed_faults():
    lines = run(SHOP, "faults").stdout.splitlines()[1:]
    return [re.split(r"  +", line) for line in lines]


def file_state(stored, meant):
    """Returns the list's word; `meant` is longer than one reception."""
    if stored == b"old":
        return "none"
    if stored == meant:
        return "right"
    if stored.startswith(meant):
        return "longer"
    if meant.startswith(stored) and len(stored) > 500:
        return "cut"
    if stored.startswith(bytes(500)) and meant.startswith(stored.lstrip(b"\0")[:100]):
        return "zeros"
    if stored.startswith(b"200\r\n<?xml") or (stored[:2] == b"\x1f\x8b" and gzip.decompress(stored) == meant):
        return "coded"
    return f"odd: {stored[:40]}"


class FaultTest(ShopTest):
    def setUp(self):
        super().setUp()
        self.profile = self.write("device.profile", f"User-Serial: PX-1\nUser-Id: 42\nPublic-Key: {KEY.public_xml()}\n"
                                  f"Private-Key: {KEY.private_xml()}\n")
        self.register(KEY.public_xml(), 100000)

    def target(self, fault, kind):
        return os.path.join(self.folder, f"{fault}-{kind}.xml")

    def start_call(self, pool, fault, kind):
        with open(self.target(fault, kind), "wb") as file:
            file.write(b"old")
        path = f"/fault/{fault}/shop/{kind if kind in ('list', 'good') else 'buy'}"
        return pool.apply_async(call_library, (kind, self.profile, self.target(fault, kind), f"http://127.0.0.1{path}",
                                               self.port))

    def outcome(self, fault, kind, result, seconds):
        """Returns the outcome of a call in the list's words, and the record's message."""
        try:
            status, code, message = result.get(seconds)
        except multiprocessing.TimeoutError:
            return "waits", ""
        if kind in self.meant:
            with open(self.target(fault, kind), "rb") as file:
                return f"{status} {file_state(file.read(), self.meant[kind])}", ""
        return (str(status) if status in (0, 200) else f"{status} code {code}"), message

    def test_results_are_those_of_the_list(self):
        self.meant = {"list": self.ask("GET", "/shop/list?type=1&category=0&sort=0&start=0&max=100")[2],
                      "good": self.ask("GET", "/shop/good?type=3&id=5")[2]}
        faults = listed_faults()
        self.assertGreater(len(faults), 40)
        messages, seen, expected = {}, {}, {}
        with multiprocessing.Pool(24) as pool:
            calls = {(fault[0], kind): self.start_call(pool, fault[0], kind) for fault in faults for kind in NUMBERS}
            # Calls that wait are examined last, after all replies have arrived.
            for name, download, sale, refusal, _ in sorted(faults, key=lambda fault: fault[1] == "waits"):
                for kind, words in zip(NUMBERS, (download, download, sale, refusal)):
                    result = self.outcome(name, kind, calls[name, kind], 0.1 if words == "waits" else 30)
                    seen[name, kind], messages[name, kind] = result
                    expected[name, kind] = words
        self.maxDiff = None
        self.assertEqual(seen, expected)
        self.assertEqual(messages["long-message", "sale"], " " + "m" * 700)
        self.assertEqual(messages["code-0", "sale"], "The body is the message")
        self.assertIn("fÃ¼r BÃ¼cher", messages["utf-8-message", "sale"])
        # A fault that only damages the reply still sells; one that refuses does not.
        sold = self.query("SELECT count(*) FROM purchase")[0][0]
        self.assertEqual(sold, sum(sale in ("0", "200", "waits", "100 code 0") for _, _, sale, *_ in faults))

    def test_one_fault_for_all(self):
        self.stop_shop()
        self.start_shop("--fault", "code-908")
        self.assertEqual(self.ask("GET", "/shop/good?type=1&id=1")[0], 409)
        self.assertEqual(self.ask("GET", "/fault/code-902/shop/good?type=1&id=1")[0], 404)
        self.assertRegex(self.stop_shop()[-1], r"GET /shop/good\?type=1&id=1 404 .*, code 902: .*, fault code-902$")

    def test_unknown_names(self):
        done = run(SHOP, "--fault", "head-apar")
        self.assertEqual((done.returncode, "unknown fault head-apar" in done.stderr), (2, True), done.stderr)
        for path in ("/fault/", "/fault/x/shop/list", "/fault/%00/shop/list", "/fault/head-apart"):
            status, headers, _ = self.ask("GET", path)
            self.assertEqual((status, headers["X-Error-Code"]), (404, "900"))
