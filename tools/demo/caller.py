"""Makes shop calls through one flavour of the library, in a caller process of its own (device/caller)."""

import struct
import subprocess
from pathlib import Path
from typing import NamedTuple

BUILD = Path(__file__).resolve().parents[2] / "build"
COMMANDS = {
    "linux": [str(BUILD / "linux/caller"), str(BUILD / "linux/libpavonix.so")],
    "ce": ["qemu-arm", str(BUILD / "device-arm/ce_runner"), str(BUILD / "ce-armv4/PAVONIX.dll")],
}


class Record(NamedTuple):
    """The record of a refused purchase; a text that was not written is None."""

    code: int
    message: str
    timestamp: str


def _wide(text):
    """A text as a caller reads it: UTF-16 units of four hex digits."""
    return text.encode("utf-16-be").hex() or '""'


def _path(name):
    return _wide(str(name).replace("/", "\\"))


def _wide_text(record, offset):
    if record[offset : offset + 2] == b"\xa5\xa5":
        return None
    units = record[offset : offset + (len(record) - offset) // 2 * 2].decode("utf-16-le", "replace")
    return units.split("\0")[0]


class Caller:
    """A device, whose calls all have the same profile. Use it in a with statement."""

    def __init__(self, flavour, profile):
        self.profile = profile
        self.process = subprocess.Popen(COMMANDS[flavour], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self._expect("ready")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.communicate("quit\n")

    def _expect(self, word):
        reply = self.process.stdout.readline().split()
        if reply[:1] != [word]:
            raise RuntimeError(f"the caller printed {reply}, not {word}")
        return reply[1:]

    def _call(self, name, *words):
        self.process.stdin.write(" ".join([name, _path(self.profile), "0 0", *map(str, words)]) + "\n")
        self.process.stdin.flush()
        return self._expect("result")

    def list(self, url, port, target, values, force=True):
        """values: type, category, sort, start and max. Returns the library's result."""
        return int(self._call("list", *values, _path(target), int(force), _wide(url), port)[0])

    def good(self, url, port, target, type_id, force=True):
        return int(self._call("good", *type_id, _path(target), int(force), _wide(url), port)[0])

    def buy(self, url, port, type_id, force=False):
        """Returns the library's result and the record."""
        status, record = self._call("buy", *type_id, int(force), _wide(url), port)
        record = bytes.fromhex(record)
        code = struct.unpack_from("<i", record, 8)[0]
        return int(status), Record(code, _wide_text(record, 12), _wide_text(record, 524))
