#!/usr/bin/env python3
"""Makes one shop call through the Windows CE image: the commands list, good and
buy of the command-line client, run by the image runner under qemu-arm."""

import argparse
import struct
import subprocess
import sys
from pathlib import Path

BUILD = Path(__file__).resolve().parents[2] / "build"
RUNNER = ["qemu-arm", str(BUILD / "device-arm/ce_runner"), str(BUILD / "ce-armv4/PAVONIX.dll")]
WORDS = {0: "failed: no reply status was obtained", 1: "kept: the file exists, nothing was sent", 200: "the server answered 200"}


def wide(text):
    """A text as the runner takes it: UTF-16 units of four hex digits."""
    return text.encode("utf-16-be").hex() or '""'


def path(name):
    return wide(name.replace("/", "\\"))


def parse():
    parser = argparse.ArgumentParser(description=__doc__)
    commands = parser.add_subparsers(dest="command", required=True)
    for name, numbers in (("list", "type category sort start max"), ("good", "type id"), ("buy", "type id")):
        command = commands.add_parser(name)
        for option in ("profile", "url", "port"):
            command.add_argument("--" + option, required=True)
        for number in numbers.split():
            command.add_argument("--" + number, type=int, default=0)
        command.add_argument("--force", action="store_true")
        if name != "buy":
            command.add_argument("--out", required=True)
    return parser.parse_args()


def command_line(call):
    numbers = {"list": ("type", "category", "sort", "start", "max")}.get(call.command, ("type", "id"))
    words = [call.command, path(call.profile), "0", "0"] + [str(getattr(call, number)) for number in numbers]
    words += ([] if call.command == "buy" else [path(call.out)]) + [str(int(call.force)), wide(call.url), call.port]
    return " ".join(words)


def wide_text(record, offset):
    units = record[offset : offset + (len(record) - offset) // 2 * 2].decode("utf-16-le", "replace")
    return units.split("\0")[0]


def main():
    call = parse()
    print("  through the image:", " ".join(Path(word).name for word in RUNNER))
    run = subprocess.run(RUNNER, input=command_line(call) + "\nquit\n", capture_output=True, text=True)
    answer = run.stdout.split("\n")[1].split() if run.returncode == 0 else []
    if len(answer) < 2 or answer[0] != "result":
        sys.exit(f"the runner failed: {run.stdout}{run.stderr}")
    status = int(answer[1])
    print(f"{WORDS.get(status, 'the server refused')} ({status})")
    if call.command == "buy" and status not in (0, 200):
        record = bytes.fromhex(answer[2])
        print(f"  error code {struct.unpack_from('<i', record, 8)[0]}, message:{wide_text(record, 12)}")
        if struct.unpack_from("<i", record, 8)[0] == 906:
            print(f"  the server's time:{wide_text(record, 524)}")
    if call.command != "buy" and status == 200:
        print(Path(call.out).read_text(encoding="utf-8"))
    return {0: 3, 1: 1, 200: 0}.get(status, 4)


sys.exit(main())
