#!/usr/bin/env python3
"""Runs the unit tests and the scenarios of build/coverage and prints what they
reach, room by room. Branches of exceptions do not count: the library has none."""

import collections
import json
import subprocess
import sys
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
BUILD = SOURCE / "build/coverage"


def measure():
    for counts in BUILD.rglob("*.gcda"):
        counts.unlink()
    scenarios = [BUILD / "tests/e2e/e2e_tests", f"--caller={BUILD}/caller", f"--library={BUILD}/libpavonix.so"]
    for command in ([BUILD / "tests/unit_tests"], scenarios):
        tests = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")
        if tests.returncode != 0:
            sys.exit(tests.stdout)
    (BUILD / "html").mkdir(exist_ok=True)
    subprocess.run(["gcovr", "--root", SOURCE, BUILD / "src", "--filter", "src/", "--exclude", "src/trace/",
                    "--exclude-throw-branches", "--exclude-unreachable-branches",
                    "--html-details", BUILD / "html/index.html", "--json-summary", BUILD / "summary.json"],
                   check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return json.loads((BUILD / "summary.json").read_text())["files"]


rooms = collections.defaultdict(collections.Counter)
for file in measure():
    room = str(Path(file["filename"]).parent.relative_to("src"))
    for key in ("line_total", "line_covered", "branch_total", "branch_covered"):
        rooms[room][key] += file[key]
        rooms["all"][key] += file[key]


def percent(room, kind):
    total = room[kind + "_total"]
    return f"{100 * room[kind + '_covered'] / total:8.1f}" if total else f"{'-':>8}"


print(f"{'room':<22}{'lines':>7}{'%':>8}{'branches':>10}{'%':>8}")
for name in sorted(rooms, key=lambda name: (name == "all", name)):
    room = rooms[name]
    print(f"{name:<22}{room['line_total']:>7}{percent(room, 'line')}{room['branch_total']:>10}{percent(room, 'branch')}")
