#!/usr/bin/python3
"""A shop that has outgrown one machine, on this one: devices browse and buy while a server is killed and the database
restarted; then what they were told is compared with the database. Run by ./dev demo scale [ce]."""

import sys
import tempfile
import time
from collections import Counter
from pathlib import Path

from caller import Caller
from scaled_shop import Rush, ScaledShop, audit, examine, replay


def step(words):
    bold = ("\033[1m", "\033[0m") if sys.stdout.isatty() else ("", "")
    print(f"\n{bold[0]}{words}{bold[1]}", flush=True)


def browse(shop, flavour):
    target = shop.folder / "list.xml"
    with Caller(flavour, next(iter(shop.devices.values()))) as device:
        status = device.list("http://127.0.0.1/shop/list", shop.port, target, (1, 0, 1, 0, 2))
    print(target.read_text() if status == 200 else f"no page: {status}")
    return status == 200


def trouble(words, *actions):
    def make():
        print(f"   {words}", flush=True)
        for action in actions:
            action()
    return make


def tell(rush, seconds):
    answers = Counter(status for told in rush.told.values() for status in told)
    again = answers.total() - len(rush.told)
    print(f"   {len(rush.told)} purchases in {seconds:.1f} s: {answers[200]} answered with 200, {answers[908]} found to "
          f"be sold when the device asked again; {again} answers were lost or were errors, and were asked for again")


def main(flavour="linux"):
    with tempfile.TemporaryDirectory(prefix='pavonix-') as folder:
        Path(folder).chmod(0o755)
        step("1. PostgreSQL, two servers, HAProxy with TLS to them, Varnish in front; 20 devices")
        with ScaledShop(folder, 20, 25) as shop:
            step("2. A device reads a page of the catalogue, and the doctor examines the front")
            good = browse(shop, flavour)
            verdict = examine(shop)
            print("   pavonix doctor: " + next(line for line in verdict.stdout.splitlines() if "compatible" in line))
            step("3. 20 devices buy 25 goods each, and the shop has a bad day")
            one, two = shop.servers
            rush, start = Rush(shop, [flavour]), time.monotonic()
            rush.run(trouble("server one is killed with -9 and started again", one.kill, one.start),
                     trouble("PostgreSQL is restarted as after a loss of power", shop.database.restart),
                     trouble("server two is killed with -9 and started again", two.kill, two.start),
                     trouble("both servers are restarted in turn, as for an upgrade", shop.restart_in_turn))
            tell(rush, time.monotonic() - start)
            step("4. What the devices were told, against the database")
            wrong = audit(shop, rush)
            print("   " + ("\n   ".join(wrong) or "one row for each, none sold twice, every balance is right"))
            step("5. Every token once more, to each server")
            count, accepted = replay(shop)
            print("   " + ("\n   ".join(accepted) or f"{count} tokens: each refused"))
            step("6. Everything stops")
    return 0 if good and verdict.returncode == 0 and not wrong and not accepted else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
