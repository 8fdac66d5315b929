"""The components whose code is in the kit: name, licence, and Debian packages.
tests/kit/licences_test.py compares this with the files that compiler and linker used."""

import dataclasses
import re


@dataclasses.dataclass(frozen=True)
class Component:
    licence: str           # an SPDX expression
    packages: str          # the Debian packages that have it
    text: str = ""         # the package with the text that its licence requires us to pass on
    loaded: bool = False   # on Linux it is a shared library of another package


COMPONENTS = {
    "Boost": Component("BSL-1.0", r"libboost[\d.]*-dev"),
    "CLI11": Component("BSD-3-Clause", "libcli11-dev", text="libcli11-dev"),
    "GCC's run-time libraries": Component("GPL-3.0-or-later WITH GCC-exception-3.1",
                                          r"lib(std|gcc).*|g(cc|\+\+)-mingw-w64-.*|gcc-arm-none-eabi", loaded=True),
    "nlohmann-json": Component("MIT", "nlohmann-json3-dev", text="nlohmann-json3-dev"),
    "LibTomMath": Component("Unlicense", r"libtommath.*", loaded=True),
    "libcsv": Component("LGPL-2.1-or-later", r"libcsv.*", text="libcsv-dev", loaded=True),
    "libxml2": Component("MIT", r"libxml2.*", text="libxml2-dev", loaded=True),
    "mingw-w64": Component("ZPL-2.1 AND MIT AND BSD-3-Clause", r"mingw-w64-.*", text="mingw-w64-x86-64-dev"),
    "OpenSSL": Component("Apache-2.0", r"libssl.*", loaded=True),
    "PostgreSQL's client library": Component("PostgreSQL", r"libpq.*", loaded=True),
    "prometheus-cpp": Component("MIT", r"libprometheus-cpp.*|prometheus-cpp-dev", loaded=True),
    "SOCI": Component("BSL-1.0", r"libsoci-.*", loaded=True),
    "SQLite": Component("blessing", r"libsqlite3-.*", loaded=True),
    "zlib": Component("Zlib", r"zlib1g.*|libz-mingw-w64.*", loaded=True),
}

# The system's own C library, and headers that only other headers read.
NOT_LINKED = {"libc6", "libc6-dev", "linux-libc-dev", "libnewlib-dev", "libicu-dev"}

_RUN_TIME = {"GCC's run-time libraries", "LibTomMath"}
_DLL = _RUN_TIME | {"mingw-w64"}
# The components whose code each file of a build contains or loads.
LINKED = {
    ("linux", "libpavonix.so"): _RUN_TIME,
    ("linux", "libpavonix-trace.so"): _RUN_TIME,
    ("linux", "pavonix"): _RUN_TIME | {"Boost", "CLI11", "nlohmann-json", "libxml2", "OpenSSL"},
    ("linux", "pavonix-shop"): {"Boost", "CLI11", "GCC's run-time libraries", "libcsv", "libxml2", "OpenSSL",
                                "PostgreSQL's client library", "prometheus-cpp", "SOCI", "SQLite", "zlib"},
    ("windows-x64", "PAVONIX.dll"): _DLL,
    ("windows-x64", "trace/PAVONIX.dll"): _DLL,
    ("windows-x64", "pavonix.exe"): _DLL | {"Boost", "CLI11", "nlohmann-json"},
    ("windows-x64", "pavonix-shop.exe"): {"Boost", "CLI11", "GCC's run-time libraries", "libcsv", "libxml2", "mingw-w64",
                                          "SOCI", "SQLite", "zlib"},
    ("windows-x86", "PAVONIX.dll"): _DLL,
    ("windows-x86", "trace/PAVONIX.dll"): _DLL,
    ("ce-armv4", "PAVONIX.dll"): _RUN_TIME,
    ("ce-armv4", "trace/PAVONIX.dll"): _RUN_TIME,
    ("ce-armv4", "PavonixTest.exe"): {"GCC's run-time libraries"},
}
# The Debian packages, and the files of the Linux build in each.
DEBIAN_PACKAGES = {
    "libpavonix1": ["libpavonix.so"],
    "libpavonix-dev": [],
    "pavonix-shop-server": [],
    "pavonix-tools": ["pavonix", "pavonix-shop", "libpavonix-trace.so"],
}


def component_of(package):
    return next((name for name, component in COMPONENTS.items() if re.fullmatch(component.packages, package)), None)


def components_of(build, files=None):
    """The names of the components of these files of a build, or of all its files."""
    return sorted(set().union(*(names for (place, file), names in LINKED.items()
                                if place == build and (files is None or file in files))))
