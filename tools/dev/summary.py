#!/usr/bin/env python3
"""summary.py JUNIT-FILE: prints why tests of a ctest run were skipped, and as the last line the counts of the run."""

import re
import sys
from xml.etree import ElementTree

counts = {"passed": 0, "failed": 0, "skipped": 0}
for test in ElementTree.parse(sys.argv[1]).getroot().iter("testcase"):
    skipped = test.find("skipped")
    if test.get("status") == "run":
        result = "passed"
    elif skipped is not None and skipped.get("message", "").startswith("SKIP_"):
        result = "skipped"
        reasons = re.findall(r"^skipped: (.*)", test.findtext("system-out", ""), re.M)
        print(f"skipped {test.get('name')}: {'; '.join(dict.fromkeys(reasons)) or 'no reason given'}")
    else:
        result = "failed"  # or not found, or timed out
    counts[result] += 1
print(", ".join(f"{count} {result}" for result, count in counts.items()))
