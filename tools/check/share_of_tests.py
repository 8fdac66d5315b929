#!/usr/bin/env python3
"""Counts lines of code, without blank lines and comments; fails if more than LIMIT per cent of them are tests."""

import collections
import json
import subprocess
import sys
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
LANGUAGES = "C++,C/C++ Header,C,C#,Python,Bourne Shell,Bourne Again Shell,CMake,SQL,Lua,HTML,CSS,JavaScript"
CONFIGURATIONS = ("vcl", "cfg", "conf", "gnuplot")  # unknown to cloc; their comments are like the shell's
TESTS = ("tests", "fuzz")
LIMIT = 32  # per cent

counted = json.loads(subprocess.run(
    ["cloc", "--quiet", "--timeout=0", "--by-file", "--json", "--exclude-dir=build,.git", "--include-lang=" + LANGUAGES,
     *("--force-lang=Bourne Shell," + ending for ending in CONFIGURATIONS), "."],
    cwd=SOURCE, stdout=subprocess.PIPE, check=True).stdout)
lines: collections.Counter[str] = collections.Counter()
for name, file in counted.items():
    if name not in ("header", "SUM"):
        folders = Path(name).parts[:-1]
        lines["/".join(folders[:2] if folders[:1] == ("tests",) else folders[:1])] += file["code"]

for folder, count in sorted(lines.items()):
    print(f"{count:7} {folder or '(top)'}")
tests = sum(count for folder, count in lines.items() if folder.split("/")[0] in TESTS)
share = 100 * tests / sum(lines.values())
print(f"{tests:7} of {sum(lines.values())} lines are tests, {share:.1f} %")
if share > LIMIT:
    sys.exit(f"more than {LIMIT} %")
