#!/usr/bin/env python3
"""Checks the dependencies in src/: the allowed includes between its folders, without cycles; system headers only in
platform/; no functions of the C and C++ run-time that the device lacks; and the sizes of files."""

import graphlib
import re
import unittest
from pathlib import Path

SRC = Path(__file__).resolve().parents[1] / "src"

# Each folder, and the folders or single headers that it may include.
FOLDERS = {
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


def folder_of(name):
    return next((folder for folder in FOLDERS if name.startswith(folder + "/")), None)


class Dependencies(unittest.TestCase):
    def test_folders_include_only_allowed_ones(self):
        unused = {(folder, allowed) for folder in FOLDERS for allowed in FOLDERS[folder]}
        used = {folder: set() for folder in FOLDERS}
        for path in sources():
            name = str(path.relative_to(SRC))
            folder = folder_of(name)
            self.assertIsNotNone(folder, f"{name} is in no listed folder")
            for header in re.findall(r'#include "([^"]+)"', path.read_text()):
                target = folder_of(header) or header.split("/")[0]
                unused -= {(folder, target), (folder, header)}
                used[folder] |= {target} - {folder}
                with self.subTest(file=name, header=header):
                    self.assertTrue(target == folder or target in FOLDERS[folder] or header in FOLDERS[folder])
        self.assertEqual(set(), unused, "allowed, but unused")
        graphlib.TopologicalSorter(used).prepare()  # raises CycleError

    def test_system_headers_only_in_platform(self):
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
