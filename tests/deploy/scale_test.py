"""The whole path, Varnish to PostgreSQL: purchases while parts are killed, what a device gets when one is down, and
backups."""

import contextlib
import os
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

TESTS = Path(__file__).resolve().parents[1]
sys.path[:0] = [str(TESTS / "tools"), str(TESTS.parent / "tools/demo")]
os.environ.setdefault("PAVONIX_PROGRAMS", str(TESTS.parent / "build/linux"))
import engines
import psycopg2
from caller import Caller
from front_test import ask, at_once
from scaled_shop import BUY, TYPE, Rush, ScaledShop, audit, examine, post, replay
from shop_fixture import PROGRAMS, Key, time_text

FLAVOURS = os.environ.get("PAVONIX_FLAVOURS", "linux").split(",")
BALANCE = 10000
# A device whose balance is not what its purchases left.
WRONG = f"""SELECT serial, balance FROM device WHERE balance <> {BALANCE} -
            (SELECT coalesce(sum(price), 0) FROM purchase WHERE purchase.serial = device.serial)"""


class Device:
    """A device with tokens made without the library."""

    KEY = Key()

    def __init__(self, folder, database):
        key = Path(folder, "device.pub")
        key.write_text(self.KEY.public_xml())
        subprocess.run([f"{PROGRAMS}/pavonix-shop", "--db", str(database), "device", "add", "--serial", "PX-9",
                        "--user-id", "1", "--public-key", str(key), "--balance", str(BALANCE)], check=True,
                       capture_output=True)

    def buy(self, port, good):
        """Returns the error code, None for a sale."""
        headers = {"User-Serial": "PX-9", "User-ID": "1", "User-Cert": self.KEY.token(time_text())}
        return post(port, headers, f"type={good[0]}&id={good[1]}&force=0")


class ScaleTest(unittest.TestCase):
    def setUp(self):
        self.folder = self.enterContext(tempfile.TemporaryDirectory())
        Path(self.folder).chmod(0o755)

    def start(self, *size):
        return self.enterContext(ScaledShop(self.folder, *size))

    def test_nothing_is_lost_or_sold_twice(self):
        shop = self.start(6, 10)
        one, _ = shop.servers
        rush = Rush(shop, FLAVOURS)
        rush.run(one.kill, one.start, shop.database.restart)
        self.assertEqual(audit(shop, rush), [])
        calls = sum(map(len, rush.results.values()))
        engines.wait_until(lambda: len(shop.exchanges()) >= calls, "the front's log")
        count, wrong = replay(shop)
        self.assertEqual(wrong, [])
        self.assertEqual(count, calls, "the front received every purchase once")

    def test_nobody_notices_a_restart_in_turn(self):
        shop = self.start(4, 60)
        rush = Rush(shop)
        rush.run(shop.restart_in_turn)
        self.assertEqual({tuple(results) for results in rush.results.values()}, {(200,)})
        self.assertEqual(audit(shop, rush), [])

    def test_what_a_device_gets_when_parts_fail(self):
        shop = self.start(1, 1, 0.05)
        device = self.enterContext(Caller(FLAVOURS[-1], shop.devices["PX-1"]))

        def page(good):
            return device.good("http://127.0.0.1/shop/good", shop.port, shop.folder / "page.xml", (1, good))

        def buy():
            status, record = device.buy(BUY, shop.port, (TYPE, shop.goods[0]))
            return status, record.code

        def all_of(parts, act):
            return lambda: [act(part) for part in parts]

        self.assertEqual(page(1), 200)
        self.assertEqual(examine(shop).returncode, 0)
        faults = [(name, all_of(parts, type(parts[0]).kill), all_of(parts, type(parts[0]).start)) for name, parts in (
            ("servers", shop.servers), ("TLS", shop.tls), ("balancer", [shop.balancer]))]
        faults.append(("database", shop.database.stop, shop.database.start))
        for unseen, (name, stop, start) in enumerate(faults, 2):
            with self.subTest(name), contextlib.ExitStack() as end:
                end.callback(start)
                stop()
                engines.wait_until(lambda: not shop.is_open(), "the fault")
                time.sleep(0.1)  # the page that was seen is no longer fresh
                self.assertEqual((page(1), page(unseen), buy()), (200, 503, (503, 999)))
                end.close()
                engines.wait_until(shop.is_open, "the shop")
                engines.wait_until(lambda: page(unseen) == 200, "the page")
        self.assertEqual(buy()[0], 200)

    def test_a_locked_table_makes_no_queue(self):
        shop = self.start(1, 1, 1)
        seen, unseen = (f"/shop/good?type={TYPE}&id={number}" for number in (1, 2))
        page = ask(shop.port, seen)[1]
        time.sleep(2)  # no longer fresh
        with contextlib.closing(psycopg2.connect(shop.database.url)) as holder, holder.cursor() as cursor:
            cursor.execute("LOCK TABLE good")
            old = at_once(*[lambda: ask(shop.port, seen)] * 12)
            failed = at_once(*[lambda: ask(shop.port, unseen)] * 12)
        print("table locked:", [sorted(round(seconds, 2) for *_, seconds in replies) for replies in (old, failed)])
        self.assertEqual({body for _, body, _ in old}, {page})
        self.assertLess(max(seconds for *_, seconds in old), 5)
        self.assertGreaterEqual(min(status for status, *_ in failed), 500)
        self.assertLess(max(seconds for *_, seconds in failed), 25)

    def test_backup_and_restore(self):
        """A backup of a shop that sells is whole, and a shop begins from it."""
        server = self.enterContext(engines.PostgreSQL(self.folder))
        file, copy, dump = (Path(self.folder, name) for name in ("shop.db", "copy.db", "shop.dump"))
        other = server.url.replace("/postgres?", "/other?")
        backups = {
            "sqlite": (file, copy, [["sqlite3", file, f".backup {copy}"]], lambda sql: ["sqlite3", copy, sql]),
            "postgresql": (server.url, other, [["pg_dump", "-Fc", "-f", dump, server.url],
                                               ["psql", server.url, "-c", "CREATE DATABASE other"],
                                               ["pg_restore", "-d", other, dump]],
                           lambda sql: ["psql", "-tA", other, "-c", sql])}
        for name, (database, restored, commands, query) in backups.items():
            with self.subTest(name):
                device = Device(self.folder, database)
                port = self.enterContext(engines.shop(self.folder, name, database)).port
                stop, sold = threading.Event(), []
                seller = threading.Thread(target=self.sell, args=(device, port, stop, sold))
                seller.start()
                engines.wait_until(lambda: len(sold) >= 5, "purchases")
                for command in commands:
                    subprocess.run(list(map(str, command)), check=True, capture_output=True)
                stop.set()
                seller.join()
                self.assertEqual(self.output(query(WRONG)), "")
                rows = int(self.output(query("SELECT count(*) FROM purchase")))
                self.assertTrue(5 <= rows <= len(sold), (rows, len(sold)))
                again = self.enterContext(engines.shop(self.folder, f"{name}-again", restored)).port
                self.assertEqual(set(device.buy(again, good) for good in sold[:5]), {908})
                self.assertIsNone(device.buy(again, (3, 6)))

    @staticmethod
    def sell(device, port, stop, sold):
        goods = [(kind, number) for kind in (1, 2) for number in range(1, 12)]
        for good in goods:
            if stop.is_set():
                break
            if device.buy(port, good) is None:
                sold.append(good)
            time.sleep(0.05)

    @staticmethod
    def output(command):
        return subprocess.run(list(map(str, command)), check=True, capture_output=True, text=True).stdout.strip()


if __name__ == "__main__":
    unittest.main()
