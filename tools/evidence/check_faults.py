#!/usr/bin/env python3
"""Requests each fault of the sample shop with list, good and buy, and has it examined; writes a table of the exit codes
and causes of pavonix and of the findings of doctor. Ends with 1 if a cause is not the fault's.

    python3 tools/evidence/check_faults.py [FAULT...]
"""

import json
import os
import re
import subprocess
import sys
import tempfile
import time

PROGRAMS = os.environ.get("PAVONIX_PROGRAMS",
                          os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "build", "linux"))
TIME_OUT = 8  # seconds; "late" replies after six

# The cause of a download's failure and of a purchase's. None: there is nothing to explain, as the call did what it
# should or was refused properly. A third entry is for "good", whose reply fits into the device's first reception.
CAUSES = {
    "head-apart": ("head-alone", None),
    "head-in-pieces": ("head-in-pieces", "head-in-pieces"),
    "late": (None, None),
    "slow": (None, None),
    "short": ("length-too-large", None),
    "long": ("length-too-small", None, None),
    "no-length": ("length-missing", None),
    "chunked": ("chunked", None),
    "compressed": ("compressed", None),
    "long-head": ("head-too-long", "head-too-long"),
    "lower-case": ("length-case", None),
    "hidden": ("length-hidden", None),
    "silent": ("silent", "silent"),
    "nothing": ("closed-empty", "closed-empty"),
    "reset": ("reset-early", "reset-early"),
    "reset-in-body": ("body-reset", None, None),
    "not-http": ("not-http", "not-http"),
    "tls": ("tls", "tls"),
    "bare-line-feeds": ("bare-line-feeds", "bare-line-feeds"),
    "head-without-end": ("head-without-end", "head-without-end"),
    "interim": ("interim", "interim"),
    "sold-with-code": (None, None),
    "redirect": ("redirect", "redirect"),
    "code-999": ("server-failed", "server-failed"),
}
FOLLOWS = {"file-not-whole", "token-unverified", "replay-unverified"}  # from the others, or from not buying
REFUSED = ("request-refused", None)


def run(*words, **options):
    return subprocess.run(words, capture_output=True, text=True, timeout=120, **options)


class Shop:
    def __init__(self, folder):
        self.profile = os.path.join(folder, "device.profile")
        database = os.path.join(folder, "shop.db")
        run(f"{PROGRAMS}/pavonix", "profile", "new", "--out", self.profile, "--serial", "PX-1", "--user-id", "42",
            check=True)
        run(f"{PROGRAMS}/pavonix-shop", "--db", database, "device", "add", "--serial", "PX-1", "--user-id", "42",
            "--public-key", self.profile + ".pub.xml", "--balance", "1000000", check=True)
        log = os.path.join(folder, "shop.log")
        with open(log, "w") as output:
            self.process = subprocess.Popen([f"{PROGRAMS}/pavonix-shop", "--db", database, "--port", "0"],
                                            stdout=output)
        listening = None
        while not listening:
            time.sleep(0.05)
            with open(log) as lines:
                listening = re.search(r"http://[^:]*:(\d+)/", lines.readline())
        self.port = listening[1]
        self.target = os.path.join(folder, "stored.xml")

    def end(self):
        self.process.terminate()
        self.process.wait()

    def url(self, fault, what):
        return f"http://127.0.0.1/fault/{fault}/shop/{what}"

    def call(self, fault, command):
        """The exit code and the cause."""
        words = {"list": ["--type", "1", "--out", self.target, "--force"],
                 "good": ["--type", "1", "--id", "1", "--out", self.target, "--force"],
                 "buy": ["--type", "1", "--id", "1", "--force"]}[command]
        done = run(f"{PROGRAMS}/pavonix", command, "--url", self.url(fault, command), "--port", self.port, "--profile",
                   self.profile, "--timeout", str(TIME_OUT), "--json", *words)
        answer = json.loads(done.stdout)
        return done.returncode, answer.get("cause")

    def doctor(self, fault):
        done = run(f"{PROGRAMS}/pavonix", "doctor", self.url(fault, "list"), "--port", self.port, "--profile",
                   self.profile, "--tries", "2", "--timeout", str(TIME_OUT), "--json")
        return [finding["rule"] for point in json.loads(done.stdout)["points"] for finding in point["findings"]]


def main():
    names = sys.argv[1:] or re.findall(r"^([a-z0-9-]+)  ", run(f"{PROGRAMS}/pavonix-shop", "faults").stdout, re.M)
    wrong, rows = [], {}
    with tempfile.TemporaryDirectory() as folder:
        shop = Shop(folder)
        try:
            for name in names:
                if name == "fault":
                    continue
                download, purchase, *good = CAUSES.get(name, REFUSED)
                cells = []
                for command, expected in (("list", download), ("good", (good or [download])[0]), ("buy", purchase)):
                    code, cause = shop.call(name, command)
                    cells.append(f"{code}" + (f" {cause}" if cause else ""))
                    if cause != expected:
                        wrong.append(f"{name} {command}: {cause}, not {expected}")
                listed, single, bought = cells
                cells = [listed if single == listed else f"{listed}; good: {single}", bought,
                         ", ".join(sorted(set(shop.doctor(name)) - FOLLOWS)) or "no fault found"]
                rows.setdefault(tuple(cells), []).append(name)
        finally:
            shop.end()
    for cells, faults in rows.items():
        if cells[0] == cells[1] and cells[0].endswith(" " + cells[2]):
            print(f"the same cause for all: {', '.join(faults)}: {cells[0]}")
    print("| fault | list, good | buy | doctor |\n|---|---|---|---|")
    for cells, faults in rows.items():
        if cells[0] != cells[1] or not cells[0].endswith(" " + cells[2]):
            print(f"| {', '.join(faults)} | {' | '.join(cells)} |")
    for line in wrong:
        print(line, file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
