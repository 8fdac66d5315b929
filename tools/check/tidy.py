#!/usr/bin/env python3
"""tidy.py BUILD...: runs clang-tidy over every C++ source of these builds, each in the first build that has it.

A source that passed is looked at again when it changed, or a header, its compiler command, or a setting; what
passed is remembered in build/check/. The builds must have been made: ninja then knows the headers.
"""

import functools
import hashlib
import json
import os
import re
import shlex
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
STAMPS = SOURCE / "build/check"
TIDY = "clang-tidy-19"  # the newest that Debian 12 and Debian 13 both have
# clang takes its target from the name of the compiler it replaces; that of the device's it does not know.
TARGETS = {"arm-mingw32ce-gcc": "armv4t-none-eabi -fshort-wchar -fsigned-char -D_WIN32 -D_WIN32_WCE=0x600 -DUNDER_CE",
           "x86_64-w64-mingw32-g++-posix": "x86_64-w64-mingw32", "arm-linux-gnueabi-g++": "arm-linux-gnueabi"}


def answer(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=True).stdout


@functools.cache
def cross_flags(compiler):
    """What clang must be told to compile for another system: the target, and where that system's C++ headers are."""
    if compiler.name not in TARGETS:
        return []
    preprocessor = "arm-none-eabi-g++" if compiler.name == "arm-mingw32ce-gcc" else compiler
    folders = re.findall(r"^ (/\S+)$", answer(preprocessor, "-E", "-v", "-xc++", "/dev/null"), re.M)
    kept = [folder for folder in folders if not re.search(r"/lib/gcc(-cross)?/[^/]+/[^/]+/include(-fixed)?$", folder)]
    return ["--target=" + word if i == 0 else word for i, word in enumerate(TARGETS[compiler.name].split())] + [
        word for folder in kept for word in ("-isystem", folder)]


def headers(build):
    """What each object of a build was made of, as far as it is in this tree."""
    parts: dict[str, list[Path]] = {}
    output = ""
    for line in answer("ninja", "-C", build, "-t", "deps").splitlines():
        if line.startswith("    "):
            path = (build / line.strip()).resolve()
            if path.is_relative_to(SOURCE):
                parts[output].append(path)
        elif ": #deps" in line:
            output = line.split(":")[0]
            parts[output] = []
    return parts


def sources(builds):
    """Each source once: its path, clang's flags, and all files that it is made of."""
    seen = set()
    for build in builds:
        made_of = headers(build)
        for entry in json.loads((build / "compile_commands.json").read_text()):
            path, words = Path(entry["file"]), shlex.split(entry["command"])
            if path in seen or path.suffix != ".cpp" or path.is_relative_to(SOURCE / "build"):
                continue
            seen.add(path)
            output = words[words.index("-o") + 1]
            # Which warnings there are is for the compiler that a flavour has.
            flags = [word for word in words[1:words.index("-o")] if not word.startswith(("-W", "--ce-tools"))]
            yield path, flags + cross_flags(Path(words[0])), made_of.get(output, []) + [path]


@functools.cache
def content(path):
    return hashlib.sha256(path.read_bytes()).digest()


def check(path, flags, parts, settings):
    """True when the source has no finding; else they are printed."""
    settings = settings + [folder / ".clang-tidy" for folder in path.parents if (folder / ".clang-tidy").exists()]
    key = hashlib.sha256(repr([flags, *map(content, sorted(set(parts + settings)))]).encode()).hexdigest()
    stamp = STAMPS / (str(path.relative_to(SOURCE)).replace("/", "_") + ".tidy")
    if stamp.exists() and stamp.read_text() == key:
        return True
    done = subprocess.run([TIDY, "--quiet", "--warnings-as-errors=*", path, "--", *flags],
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    if done.returncode == 0:
        stamp.write_text(key)
    else:
        print(done.stdout or done.stderr, flush=True)
    return done.returncode == 0


def main():
    STAMPS.mkdir(parents=True, exist_ok=True)
    settings = [Path("/usr/bin", TIDY).resolve(), Path(__file__).resolve()]
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        results = list(pool.map(lambda source: check(*source, settings), sources([Path(b).resolve() for b in sys.argv[1:]])))
    print(f"clang-tidy: {len(results)} sources, {results.count(False)} with findings")
    sys.exit(not all(results))


main()
