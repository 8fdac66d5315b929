#!/usr/bin/env python3
"""run_row.py NAME FLAVOUR: plays one scenario of the end-to-end table, in each way that ctest plays the flavour's."""

import difflib
import json
import subprocess
import sys

name, flavour = sys.argv[1:]
known = json.loads(subprocess.check_output(["ctest", "--test-dir", "build/linux", "--show-only=json-v1"], text=True))
tests = [test for test in known["tests"] if test["name"].startswith("e2e." + flavour)
         and test.get("command", [""])[0].endswith("/e2e_tests")]
listing = subprocess.check_output([*tests[0]["command"], "--gtest_list_tests", "--gtest_filter=*"], text=True)
rows = [line.strip() for line in listing.splitlines() if line.startswith("  ")]
if name not in rows:
    sys.exit(f"no row {name}; near it: {', '.join(difflib.get_close_matches(name, rows, 5, 0.5)) or 'none'}")

failed = False
for test in tests:
    properties = {entry["name"]: entry["value"] for entry in test["properties"]}
    environment = properties.get("ENVIRONMENT", [])
    print(f"== {test['name']}", flush=True)
    failed |= subprocess.call(["env", *environment, *test["command"], "--gtest_brief=1", f"--gtest_filter=*.{name}"]) != 0
sys.exit(failed)
