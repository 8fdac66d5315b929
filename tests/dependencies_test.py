#!/usr/bin/env python3
"""Holds the house together: which room of src/ may include which, without cycles, that the
system's headers stay behind the platform contract, and that the library takes
nothing from the C and C++ run-time that the device lacks."""

import graphlib
import re
import unittest
from pathlib import Path

SRC = Path(__file__).resolve().parents[1] / "src"

# Each room and what it may include besides itself: rooms, or single headers.
ROOMS = {
    "platform": set(),
    "rsa/text": {"platform"},
    "rsa/digest": set(),
    "rsa/encoding": {"rsa/text"},
    "rsa/log": {"rsa/text", "rsa/encoding", "platform"},
    "rsa/random": {"rsa/text", "platform"},
    "rsa/charset": {"rsa/text", "rsa/log", "platform"},
    "rsa/bigint": {"rsa/text", "rsa/encoding"},
    "rsa/key": {"rsa/text", "rsa/log", "rsa/bigint"},
    "rsa/cipher": {"rsa/text", "rsa/log", "rsa/key", "rsa/encoding", "rsa/charset", "rsa/digest", "rsa/random"},
    "http": {"rsa/text", "platform"},
    "store": {"rsa/text", "platform"},
    "profile": {"rsa/text", "platform", "http/find_text.h", "rsa/cipher/zt_rsa.h", "trace"},
    "shop": {"rsa/text", "platform", "http", "store", "profile", "pavonix", "trace"},
    "trace": {"rsa/text", "platform", "http/reply_facts.h", "pavonix"},
}
STANDARD = {"algorithm", "array", "cstddef", "cstdint", "cstring", "initializer_list", "memory", "new", "span",
            "optional", "string_view", "type_traits", "utility", "tommath.h", "bit"}


def sources(top=SRC):
    return sorted(path for path in top.rglob("*") if path.suffix in (".h", ".cpp"))


def room_of(name):
    return next((room for room in ROOMS if name.startswith(room + "/")), None)


class House(unittest.TestCase):
    def test_rooms_include_only_what_stands_below_them(self):
        unused = {(room, allowed) for room in ROOMS for allowed in ROOMS[room]}
        used = {room: set() for room in ROOMS}
        for path in sources():
            name = str(path.relative_to(SRC))
            room = room_of(name)
            self.assertIsNotNone(room, f"{name} stands in no room")
            for header in re.findall(r'#include "([^"]+)"', path.read_text()):
                target = room_of(header) or header.split("/")[0]
                unused -= {(room, target), (room, header)}
                used[room] |= {target} - {room}
                with self.subTest(file=name, header=header):
                    self.assertTrue(target == room or target in ROOMS[room] or header in ROOMS[room])
        self.assertEqual(set(), unused, "allowed, but nobody does it")
        graphlib.TopologicalSorter(used).prepare()  # raises CycleError

    def test_headers_of_the_system_stay_in_the_platform(self):
        for path in sources():
            if "platform" in path.relative_to(SRC).parts:
                continue
            text = path.read_text()
            for header in re.findall(r"#include <([^>]+)>", text):
                with self.subTest(file=path.name, header=header):
                    self.assertIn(header, STANDARD)
            with self.subTest(file=path.name):
                self.assertNotRegex(text, r"\b(throw|dynamic_cast|typeid|std::string\b(?!_)|snprintf|sscanf|strtol)\b")
                self.assertNotRegex(text, r"_WIN32|UNDER_CE|__linux__")

    def test_every_file_is_small(self):
        for path in sources():
            with self.subTest(file=path.name):
                self.assertLessEqual(len(path.read_text().splitlines()), 250)


if __name__ == "__main__":
    unittest.main(verbosity=1)
