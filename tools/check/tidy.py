#!/usr/bin/env python3
"""tidy.py BUILD...: runs clang-tidy over every C++ source of these builds, each in the first build that has it.

It writes build/check/build.ninja, by which ninja checks a source again if it, a header of it, its flags or a setting
changed. The builds must have been made: their ninja knows the headers.
"""

import functools
import json
import re
import shlex
import subprocess
import sys
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
FOLDER = SOURCE / "build/check"
TIDY = "clang-tidy-19"  # the newest that Debian 12 and Debian 13 both have
# clang is told the target that a compiler of this name has.
TARGETS = {"arm-mingw32ce-gcc": "armv4t-none-eabi -fshort-wchar -fsigned-char -D_WIN32 -D_WIN32_WCE=0x600 -DUNDER_CE",
           "x86_64-w64-mingw32-g++-posix": "x86_64-w64-mingw32", "arm-linux-gnueabi-g++": "arm-linux-gnueabi"}
RULE = f"""rule tidy
  command = {TIDY} --quiet '--warnings-as-errors=*' $in -- $flags >$out 2>&1 || {{ cat $out; rm $out; exit 1; }}
"""


def output_of(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=True).stdout


@functools.cache
def cross_flags(compiler):
    """The flags by which clang compiles for another system: the target, and the folders of its C++ headers."""
    if compiler.name not in TARGETS:
        return []
    preprocessor = "arm-none-eabi-g++" if compiler.name == "arm-mingw32ce-gcc" else compiler
    folders = re.findall(r"^ (/\S+)$", output_of(preprocessor, "-E", "-v", "-xc++", "/dev/null"), re.M)
    own = [folder for folder in folders if re.search(r"/lib/gcc(-cross)?/[^/]+/[^/]+/include(-fixed)?$", folder)]
    return [*f"--target={TARGETS[compiler.name]}".split(),
            *(f"-isystem{folder}" for folder in folders if folder not in own)]


def headers(build):
    """The files of this tree that each object of a build was made of."""
    listed = re.findall(r"^(\S+): #deps.*\n((?:    .*\n)*)", output_of("ninja", "-C", build, "-t", "deps"), re.M)
    made_of = {output: [(build / name).resolve() for name in names.split()] for output, names in listed}
    return {output: [path for path in paths if path.is_relative_to(SOURCE)] for output, paths in made_of.items()}


def sources(build):
    """Each source: its path, clang's flags, and the files that it is made of."""
    made_of = headers(build)
    for entry in json.loads((build / "compile_commands.json").read_text()):
        path, words = Path(entry["file"]), shlex.split(entry["command"])
        if path.suffix == ".cpp" and not path.is_relative_to(SOURCE / "build"):
            end = words.index("-o")
            # The warnings are those of a flavour's own compiler.
            flags = [word for word in words[1:end] if not word.startswith(("-W", "--ce-tools"))]
            yield path, flags + cross_flags(Path(words[0])), made_of.get(words[end + 1], [])


def edge(path, flags, parts):
    settings = [folder / ".clang-tidy" for folder in path.parents if (folder / ".clang-tidy").exists()]
    needs = " ".join(map(str, [*parts, *settings, Path("/usr/bin", TIDY).resolve()]))
    return f"build {path.relative_to(SOURCE)}.tidy: tidy {path} | {needs}\n  flags = {shlex.join(flags).replace('$', '$$')}\n"


found: dict[Path, str] = {}
for name in sys.argv[1:]:
    for source in sources(Path(name).resolve()):
        found.setdefault(source[0], edge(*source))
FOLDER.mkdir(parents=True, exist_ok=True)
(FOLDER / "build.ninja").write_text(RULE + "".join(found.values()))
failed = subprocess.run(["ninja", "-C", FOLDER, "--quiet", "-k", "0"]).returncode
print(f"clang-tidy: {len(found)} sources, {'findings above' if failed else 'no findings'}")
sys.exit(failed)
