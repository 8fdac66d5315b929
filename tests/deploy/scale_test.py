"""The whole path, Varnish to PostgreSQL: purchases while parts are killed, and what a device gets when one is down."""

import os
import sys
import tempfile
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools/demo"))
import engines
from caller import Caller
from scaled_shop import BUY, TYPE, Rush, ScaledShop, audit, examine, replay

FLAVOURS = os.environ["PAVONIX_FLAVOURS"].split(",")
FAILED = (503, 999, " The shop failed or cannot be reached, try again without force")


class ScaleTest(unittest.TestCase):
    def start(self, *size):
        folder = self.enterContext(tempfile.TemporaryDirectory())
        Path(folder).chmod(0o755)
        return self.enterContext(ScaledShop(folder, *size))

    def test_nothing_is_lost_or_sold_twice(self):
        shop = self.start(6, 10)
        one, _ = shop.servers
        rush = Rush(shop, FLAVOURS)
        rush.run(one.kill, one.start, shop.database.restart)
        self.assertEqual(audit(shop, rush), [])
        count, wrong = replay(shop)
        self.assertEqual(wrong, [])
        self.assertEqual(count, sum(map(len, rush.told.values())), "every purchase came to the front once")

    def test_what_a_device_gets_when_parts_fail(self):
        shop = self.start(1, 1, 0.05)
        device = self.enterContext(Caller(FLAVOURS[-1], shop.devices["PX-1"]))

        def page(good):
            return device.good("http://127.0.0.1/shop/good", shop.port, shop.folder / "page.xml", (1, good))

        def buy():
            status, record = device.buy(BUY, shop.port, (TYPE, shop.goods[0]))
            return status, record.code, record.message

        def servers(act):
            for server in shop.servers:
                act(server)

        def with_certificates_of(authority):
            servers(engines.Engine.kill)
            servers(lambda server: authority.sign(server.name))
            servers(engines.Engine.start)

        self.assertEqual(page(1), 200)
        self.assertEqual(examine(shop).returncode, 0)
        stranger = engines.Authority(shop.folder, "stranger")
        faults = [("application", lambda: servers(engines.Engine.kill), lambda: servers(engines.Engine.start)),
                  ("database", shop.database.stop, shop.database.start),
                  ("certificate", lambda: with_certificates_of(stranger), lambda: with_certificates_of(shop.authority)),
                  ("balancer", shop.balancer.kill, shop.balancer.start)]
        for unseen, (name, stop, start) in enumerate(faults, 2):
            with self.subTest(name):
                stop()
                engines.wait_until(lambda: not shop.is_open(), "the fault")
                time.sleep(0.1)  # the page that was seen is no longer fresh
                self.assertEqual((page(1), page(unseen), buy()), (200, 503, FAILED))
                start()
                engines.wait_until(shop.is_open, "the shop")
                engines.wait_until(lambda: page(unseen) == 200, "the page")
        self.assertEqual(buy()[0], 200)


if __name__ == "__main__":
    unittest.main()
