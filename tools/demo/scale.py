#!/usr/bin/python3
"""The shop of several machines on this one: devices browse and buy while servers are killed and the database is
restarted; then their results are compared with the database. Run by ./dev demo scale [ce]."""

import sys
import tempfile
import time
from collections import Counter
from pathlib import Path

from caller import Caller
from scaled_shop import Rush, ScaledShop, audit, examine, replay


def step(words):
    print(f"\n\033[1m{words}\033[0m", flush=True)


def browse(shop, flavour):
    target = shop.folder / "list.xml"
    with Caller(flavour, next(iter(shop.devices.values()))) as device:
        status = device.list("http://127.0.0.1/shop/list", shop.port, target, (1, 0, 1, 0, 2))
    print(target.read_text() if status == 200 else f"no page: {status}")
    return status == 200


def fault(words, *actions):
    def cause():
        print(f"   {words}", flush=True)
        for action in actions:
            action()
    return cause


def summarise(rush, seconds):
    counts = Counter(result for results in rush.results.values() for result in results)
    print(f"   {len(rush.results)} purchases in {seconds:.1f} s: {counts[200]} returned 200, {counts[908]} were found sold "
          f"when the device repeated them; {counts.total() - len(rush.results)} calls failed and were repeated")


def main(flavour="linux"):
    with tempfile.TemporaryDirectory(prefix='pavonix-') as folder:
        Path(folder).chmod(0o755)
        step("1. PostgreSQL, two servers, HAProxy with TLS to them, Varnish in front; 20 devices")
        with ScaledShop(folder, 20, 25) as shop:
            step("2. A device reads a page of the catalogue, and the doctor examines the front")
            good = browse(shop, flavour)
            verdict = examine(shop)
            print("   pavonix doctor: " + next(line for line in verdict.stdout.splitlines() if "compatible" in line))
            step("3. 20 devices buy 25 goods each while parts of the shop fail")
            one, two = shop.servers
            rush, start = Rush(shop, [flavour]), time.monotonic()
            rush.run(fault("server one is killed with -9 and started again", one.kill, one.start),
                     fault("PostgreSQL is restarted as after a loss of power", shop.database.restart),
                     fault("server two is killed with -9 and started again", two.kill, two.start),
                     fault("both servers are restarted in turn, as for an upgrade", shop.restart_in_turn))
            summarise(rush, time.monotonic() - start)
            step("4. The devices' results against the database")
            wrong = audit(shop, rush)
            print("   " + ("\n   ".join(wrong) or "one row for each purchase, none sold twice, every balance right"))
            step("5. Every token once more, to each server")
            count, accepted = replay(shop)
            print("   " + ("\n   ".join(accepted) or f"{count} tokens: each refused"))
            step("6. Everything stops")
    return 0 if good and verdict.returncode == 0 and not wrong and not accepted else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
