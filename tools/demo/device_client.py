#!/usr/bin/env python3
"""The client's commands list, good and buy, as calls of the Windows CE image under qemu-arm."""

import argparse
import sys
from pathlib import Path

from caller import COMMANDS, Caller

RESULTS = {0: "no usable reply", 1: "the file exists and was kept", 200: "the server returned 200"}


def parse():
    parser = argparse.ArgumentParser(description=__doc__)
    commands = parser.add_subparsers(dest="command", required=True)
    for name, numbers in (("list", "type category sort start max"), ("good", "type id"), ("buy", "type id")):
        command = commands.add_parser(name)
        command.set_defaults(numbers=numbers.split())
        for option in ("profile", "url", "port"):
            command.add_argument("--" + option, required=True)
        for number in numbers.split():
            command.add_argument("--" + number, type=int, default=0)
        command.add_argument("--force", action="store_true")
        if name != "buy":
            command.add_argument("--out", required=True)
    return parser.parse_args()


def show_refusal(record):
    print(f"  error code {record.code}, message:{record.message or ''}")
    if record.code == 906:
        print(f"  the server's time:{record.timestamp or ''}")


def main():
    call = parse()
    print("  with the image:", " ".join(Path(word).name for word in COMMANDS["ce"]))
    numbers = [getattr(call, number) for number in call.numbers]
    with Caller("ce", call.profile) as device:
        if call.command == "buy":
            status, record = device.buy(call.url, call.port, numbers, call.force)
        else:
            status = getattr(device, call.command)(call.url, call.port, call.out, numbers, call.force)
    print(f"{RESULTS.get(status, 'the server refused')} ({status})")
    if call.command == "buy" and status not in (0, 200):
        show_refusal(record)
    if call.command != "buy" and status == 200:
        print(Path(call.out).read_text(encoding="utf-8"))
    return {0: 3, 1: 1, 200: 0}.get(status, 4)


sys.exit(main())
