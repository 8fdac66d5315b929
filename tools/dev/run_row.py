#!/usr/bin/env python3
"""run_row.py NAME FLAVOUR: plays one scenario of the end-to-end table in each way in which ctest plays the flavour.

A row that fails is played again with the flavour's tracing build, which shows its trace.
"""

import difflib
import json
import subprocess
import sys

name, flavour = sys.argv[1:]
prefix = "e2e.trace.linux" if flavour == "trace" else "e2e." + flavour
known = json.loads(subprocess.check_output(["ctest", "--test-dir", "build/linux", "--show-only=json-v1"], text=True))
tests = {test["name"]: test for test in known["tests"] if test.get("command", [""])[0].endswith("/e2e_tests")}
chosen = [test for test in tests if test.startswith(prefix)]
listing = subprocess.check_output([*tests[chosen[0]]["command"], "--gtest_list_tests", "--gtest_filter=*"], text=True)
rows = [line.strip() for line in listing.splitlines() if line.startswith("  ")]
if name not in rows:
    sys.exit(f"no row {name}; near it: {', '.join(difflib.get_close_matches(name, rows, 5, 0.5)) or 'none'}")


def passes(test: str) -> bool:
    print(f"== {test}", flush=True)
    environment = {entry["name"]: entry["value"] for entry in tests[test]["properties"]}.get("ENVIRONMENT", [])
    return subprocess.call(["env", *environment, *tests[test]["command"], "--gtest_brief=1", f"--gtest_filter=*.{name}"]) == 0


failed = [test for test in chosen if not passes(test)]
if failed and f"e2e.trace.{flavour}" in tests:
    passes(f"e2e.trace.{flavour}")
sys.exit(bool(failed))
