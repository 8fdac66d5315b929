#!/usr/bin/env python3
"""Runs the unit tests, scenarios and prove_port of build/coverage, prints their coverage by folder, and fails below
the limits here."""

import collections
import json
import subprocess
import sys
import tempfile
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
BUILD = SOURCE / "build/coverage"
WHOLE = ("http", "profile", "shop", "store")  # every branch of these rooms must be taken
LEAST = 95  # percent of all lines and of all branches
# Branches that no run can take, as the lines they are in.
NOT_COUNTED = [
    r"\bdelete\b",  # the compiler tests for null, which never occurs
    r"\bnew \(std::nothrow\)",  # and whether there is an object to construct
    r"headReceived_ != 0|IsAbsent\(contentType_\)",  # unused by the calls
    r"mark_ != kAlive",  # ends the process, and its counts with it
]


def measure():
    for counts in BUILD.rglob("*.gcda"):
        counts.unlink()
    scenarios = [BUILD / "tests/e2e/e2e_tests", f"--caller={BUILD}/caller", f"--library={BUILD}/libpavonix.so"]
    with tempfile.TemporaryDirectory() as folder:
        for command in ([BUILD / "tests/unit_tests"], scenarios, [BUILD / "tests/platform/prove_port", folder]):
            tests = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                   errors="replace")
            if tests.returncode != 0:
                sys.exit(tests.stdout)
    (BUILD / "html").mkdir(exist_ok=True)
    subprocess.run(["gcovr", "--root", SOURCE, BUILD / "src", "--filter", "src/", "--exclude", "src/trace/",
                    "--exclude-throw-branches", "--exclude-unreachable-branches",
                    "--exclude-branches-by-pattern", ".*(" + "|".join(NOT_COUNTED) + ")",
                    "--html-details", BUILD / "html/index.html", "--json-summary", BUILD / "summary.json"],
                   check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return json.loads((BUILD / "summary.json").read_text())["files"]


rooms: dict[str, collections.Counter[str]] = collections.defaultdict(collections.Counter)
for file in measure():
    room = str(Path(file["filename"]).parent.relative_to("src"))
    for key in ("line_total", "line_covered", "branch_total", "branch_covered"):
        rooms[room][key] += file[key]
        rooms["all"][key] += file[key]


def percent(room, kind):
    return 100 * room[kind + "_covered"] / (room[kind + "_total"] or 1)


print(f"{'room':<22}{'lines':>7}{'%':>8}{'branches':>10}{'%':>8}")
for name in sorted(rooms, key=lambda name: (name == "all", name)):
    counts = rooms[name]
    print(f"{name:<22}{counts['line_total']:>7}{percent(counts, 'line'):>8.1f}"
          f"{counts['branch_total']:>10}{percent(counts, 'branch'):>8.1f}")
low = [name for name in WHOLE if percent(rooms[name], "branch") < 100]
low += [f"all {kind}s" for kind in ("line", "branch") if percent(rooms["all"], kind) < LEAST]
if low:
    sys.exit(f"the coverage is too low: {', '.join(low)}")
