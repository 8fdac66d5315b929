#!/usr/bin/env python3
"""Says what keeps a commit from being released.

Usage: check_release.py SOURCE VERSION: ends with 1 and a line for each reason.
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
        yield f"CHANGELOG.md is of a day to come: {dated[1]}"
    if not re.search(r"(?m)^Mended:\n\n- \S", entry):
        yield 'CHANGELOG.md names no faults: a list below "Mended:", or "- nothing"'


def problems(source, version):
    if not re.fullmatch(r"\d+\.\d+\.\d+", version):
        yield f"{version} is no version: three numbers with points"
        return
    if git(source, "status", "--porcelain"):
        yield "not everything is committed"
    if git(source, "tag", "--list", f"v{version}"):
        yield f"there is a tag v{version} already"
    yield from header_problems(source, version)
    yield from change_problems(source, version)


if __name__ == "__main__":
    found = list(problems(*sys.argv[1:]))
    print("\n".join(f"not to be released: {reason}" for reason in found), end="\n" if found else "", file=sys.stderr)
    sys.exit(1 if found else 0)
