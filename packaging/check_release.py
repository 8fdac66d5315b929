#!/usr/bin/env python3
"""Checks whether a commit can be released; if not, exits with 1 and prints a line for each reason.

Usage: check_release.py SOURCE VERSION
"""

import datetime
import pathlib
import re
import subprocess
import sys


def git(source, *arguments):
    return subprocess.run(["git", "-C", source, *arguments], check=True, stdout=subprocess.PIPE, text=True).stdout


def header_problems(source, version):
    header = pathlib.Path(source, "include/pavonix/pavonix.h").read_text()
    number = "0x" + "".join(f"{int(part):02x}" for part in version.split("."))
    for wanted in (f'#define PAVONIX_VERSION "{version}"', f"#define PAVONIX_VERSION_NUMBER {number}"):
        if wanted not in header:
            yield f"pavonix.h lacks: {wanted}"


def change_problems(source, version):
    first = re.search(r"(?ms)^## (.*?)$(.*?)(?=^## |\Z)", pathlib.Path(source, "CHANGELOG.md").read_text())
    title, entry = first.groups() if first else ("", "")
    dated = re.fullmatch(re.escape(version) + r", (\d{4}-\d\d-\d\d)", title)
    if not dated:
        yield f'CHANGELOG.md begins with "{title}", not with "{version}, DATE"'
    elif dated[1] > datetime.date.today().isoformat():
        yield f"CHANGELOG.md is dated in the future: {dated[1]}"
    if not re.search(r"(?m)^Fixed:\n\n- \S", entry):
        yield 'CHANGELOG.md lists no fixed faults: write them below "Fixed:", or "- none"'


def problems(source, version):
    if not re.fullmatch(r"\d+\.\d+\.\d+", version):
        yield f"{version} is not a version (expected MAJOR.MINOR.PATCH)"
        return
    if git(source, "status", "--porcelain"):
        yield "not everything is committed"
    if git(source, "tag", "--list", f"v{version}"):
        yield f"the tag v{version} exists already"
    yield from header_problems(source, version)
    yield from change_problems(source, version)


if __name__ == "__main__":
    found = list(problems(*sys.argv[1:]))
    print("\n".join(f"cannot be released: {reason}" for reason in found), end="\n" if found else "", file=sys.stderr)
    sys.exit(1 if found else 0)
