#!/usr/bin/env python3
"""Finds links of the Markdown pages to files that do not exist."""

import re
import subprocess
import sys
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]

pages = [SOURCE / name for name in subprocess.check_output(
    ["git", "-C", SOURCE, "ls-files", "--cached", "--others", "--exclude-standard", "*.md"], text=True).split()]
links = [(page, link) for page in pages for link in re.findall(r"\]\(([^)#:]+)[^):]*\)", page.read_text())]
dead = [f"{page.relative_to(SOURCE)}: {link}" for page, link in links if not (page.parent / link).exists()]
print(f"{len(links)} links", *dead, sep="\n")
sys.exit(bool(dead) or len(links) == 0)
