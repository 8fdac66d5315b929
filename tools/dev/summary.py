#!/usr/bin/env python3
"""summary.py JUNIT-FILE: why tests of a ctest run were skipped, and as its last line the counts of the run."""

import re
import sys
from xml.etree import ElementTree

suite = ElementTree.parse(sys.argv[1]).getroot()
failed, skipped = int(suite.get("failures")), int(suite.get("skipped"))
for test in suite:
    if test.find("skipped") is not None:
        reasons = re.findall(r"skipped:? '?(.*?)'?$", test.findtext("system-out", ""), re.M)
        print(f"skipped {test.get('name')}: {'; '.join(dict.fromkeys(reasons)) or 'it gave no reason'}")
print(f"{int(suite.get('tests')) - failed - skipped} passed, {failed} failed, {skipped} skipped")
