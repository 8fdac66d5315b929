"""The kit's list of components names every package whose code is in a shipped program or is loaded by it: it is compared
with the headers that the compiler read and the libraries that the linker used."""

import os
import pathlib
import re
import subprocess
import sys
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(str(SOURCE / "packaging"))
from components import LINKED, NOT_LINKED, component_of

BUILDS = {"linux": pathlib.Path(os.environ["PAVONIX_PROGRAMS"])} | {
    name: SOURCE / "build" / name for name in ("windows-x64", "windows-x86", "ce-armv4")}

# Debian's source packages, by the beginning of the folder into which they are unpacked.
SOURCES = {"libtommath": "libtommath-dev", "soci": "libsoci-dev", "sqlite3": "libsqlite3-dev", "libxml2": "libxml2-dev",
           "libcsv": "libcsv-dev"}


def output_of(*command, **options):
    return subprocess.run([str(word) for word in command], check=True, stdout=subprocess.PIPE, text=True, timeout=100,
                          **options).stdout


def packages_of(files):
    """Returns the Debian packages that contain the files."""
    files = sorted({str(pathlib.Path(file).resolve()) for file in files})
    unpackaged = [file for file in files if not file.startswith(("/usr/", "/lib/"))]
    listed = subprocess.run(["dpkg", "-S", *set(files) - set(unpackaged)], stdout=subprocess.PIPE, text=True,
                            stderr=subprocess.DEVNULL).stdout
    found = {name.split(":")[0] for line in listed.splitlines() for name in line.rpartition(": ")[0].split(", ")}
    return found | {package for file in unpackaged for folder, package in SOURCES.items() if f"/{folder}-" in file}


def headers_of(build, program):
    inputs = output_of("ninja", "-C", build, "-t", "inputs", program).split("\n")
    objects = [name for name in inputs if name.endswith((".o", ".obj", ".gch", ".a"))]
    listed = output_of("ninja", "-C", build, "-t", "deps", *[name for name in objects if not name.endswith(".a")])
    return [build / name.strip() for name in listed.splitlines() if name.startswith("    ")] + [
        build / name for name in inputs if name.startswith("/")]


def archives_of(program_map):
    """The archives of which the linker took members, from its map."""
    taken = program_map.read_text().partition("Memory Configuration")[0].partition("Discarded input")[0]
    return {match for match in re.findall(r"(?m)^(/\S+\.a)\(", taken)}


def loaded_by(program):
    names = re.findall(r"Shared library: \[(.*?)\]", output_of("readelf", "-d", program))
    places = dict(re.findall(r"(\S+) => (\S+)", output_of("ldd", program)))
    return [places[name] for name in names if name in places]


class LicencesTest(unittest.TestCase):
    def test_list_is_what_compiler_and_linker_used(self):
        for (build_name, program), listed in LINKED.items():
            build = BUILDS[build_name]
            used = packages_of(headers_of(build, program))
            if build_name == "linux":
                used |= packages_of(loaded_by(build / program))
            else:
                used |= packages_of(archives_of((build / program).with_suffix(".map")))
            found = {component_of(package) for package in used - NOT_LINKED if component_of(package)}
            with self.subTest(program=program, build=build_name):
                self.assertEqual(found, set(listed), sorted(used))
