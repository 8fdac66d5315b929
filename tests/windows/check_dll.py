#!/usr/bin/env python3
"""Checks a built PAVONIX.dll by what objdump and nm say about it.

    check_dll.py FLAVOUR TOOLS FOLDER

FLAVOUR is ce, x64 or x86, TOOLS the path prefix of its binutils, FOLDER the
build folder that holds the DLL and its import libraries. A fault here is one
that the device answers with no more than "cannot load library".
"""
import pathlib
import re
import subprocess
import sys

EXPORTS = {1: "GetGoodListXml", 2: "GetOneGoodXml", 3: "GetBuyGood"}
X86_SYMBOLS = {"_GetGoodListXml@24", "_GetOneGoodXml@24", "_GetBuyGood@20"}
FORMATS = {"ce": "pei-arm-wince-little", "x64": "pei-x86-64", "x86": "pei-i386"}
LIBRARY_MACHINES = {"ce": 0x1C2, "x64": 0x8664, "x86": 0x14C}
CE_SUBSYSTEM, CONSOLE_SUBSYSTEM = 9, 3
NEWEST_CE = (6, 0)
CE_SECTIONS = {".text", ".data", ".rdata", ".pdata", ".bss", ".edata", ".idata", ".rsrc", ".reloc"}
DESKTOP_SYSTEM = {"kernel32.dll", "msvcrt.dll", "ws2_32.dll", "advapi32.dll"}


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def field(headers, name):
    return int(re.search(r"^%s\s+([0-9a-f]+)" % name, headers, re.M)[1], 16)


def check_kind(flavour, headers):
    assert "file format " + FORMATS[flavour] in headers
    assert re.search(r"^\tDLL$", headers, re.M)
    assert "relocations stripped" not in headers
    assert re.search(r"\] (HIGHLOW|DIR64)$", headers, re.M), "no base relocation"
    for directory in "Resource", "Base Relocation":
        assert re.search(r"^Entry \w [0-9a-f]+ 0*[1-9a-f][0-9a-f]* %s Dir" % directory, headers, re.M), directory
    assert field(headers, "Subsystem") == (CE_SUBSYSTEM if flavour == "ce" else CONSOLE_SUBSYSTEM)
    if flavour == "ce":
        version = field(headers, "MajorSubsystemVersion"), field(headers, "MinorSubsystemVersion")
        assert version <= NEWEST_CE, version


def check_sections(flavour, dll, tools):
    listing = run(tools + "objdump", "-h", dll)
    sections = re.findall(r"^ +\d+ (\S+) .*\n +(.*)$", listing, re.M)
    assert len(sections) >= 5, listing
    for name, flags in sections:
        assert flavour != "ce" or name in CE_SECTIONS, "unexpected section " + name
        assert "CODE" not in flags or "READONLY" in flags, "writable code in " + name


def check_exports(headers):
    base = {int(index): int(base) for index, base in re.findall(r"^\t\[ *(\d+)\] \+base\[ *(\d+)\]", headers, re.M)}
    names = re.findall(r"^\t\[ *(\d+)\] (\w\S*)$", headers, re.M)
    assert {base[int(index)]: name for index, name in names} == EXPORTS, names
    assert len(base) == len(EXPORTS), base


def imports(headers):
    """The imported names by DLL; an import by ordinal has no name and shows as <none>."""
    found = {}
    for part in headers.split("DLL Name: ")[1:]:
        library, _, rest = part.partition("\n")
        table = rest.split("\n\n")[0]
        found[library.strip().lower()] = set(re.findall(r"^\t[0-9a-f]+\s+\d+\s+(\S+)", table, re.M))
    return found


def check_imports(flavour, headers):
    found = imports(headers)
    if flavour != "ce":
        assert found and set(found) <= DESKTOP_SYSTEM, set(found)
        return
    assert set(found) == {"coredll.dll", "ws2.dll"}, set(found)
    for library, names in found.items():
        known = set((pathlib.Path(__file__).parent / (library.replace(".dll", "_exports.txt"))).read_text().split())
        assert names and names <= known, names - known


def check_import_libraries(flavour, tools, folder):
    expected = X86_SYMBOLS if flavour == "x86" else set(EXPORTS.values())
    for library in "libPAVONIX.dll.a", "PAVONIX.lib":
        symbols = set(re.findall(r" T (\w*Get\S+)$", run(tools + "nm", str(folder / library)), re.M))
        assert symbols == expected, (library, symbols)
    members = (folder / "PAVONIX.lib").read_bytes().split(b"`\n")[3:]
    for member in members:
        offset = 6 if member.startswith(b"\0\0\xff\xff") else 0
        assert int.from_bytes(member[offset:offset + 2], "little") == LIBRARY_MACHINES[flavour], member


def main():
    flavour, tools, folder = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    dll = str(folder / "PAVONIX.dll")
    headers = run(tools + "objdump", "-p", dll)
    check_kind(flavour, headers)
    check_sections(flavour, dll, tools)
    check_exports(headers)
    check_imports(flavour, headers)
    check_import_libraries(flavour, tools, folder)


main()
