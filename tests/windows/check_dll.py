#!/usr/bin/env python3
"""Checks a built PAVONIX.dll, and the tracing one beside it, by headers and tables.

    check_dll.py FLAVOUR TOOLS FOLDER

FLAVOUR is ce, x64 or x86, TOOLS the path prefix of its binutils, FOLDER the
build folder that holds the DLLs and their import libraries. A device reports
such faults only as "cannot load library".
"""
import pathlib
import re
import subprocess
import sys

import pefile

EXPORTS = {1: b"GetGoodListXml", 2: b"GetOneGoodXml", 3: b"GetBuyGood"}
X86_SYMBOLS = {"_GetGoodListXml@24", "_GetOneGoodXml@24", "_GetBuyGood@20"}
MACHINES = {"ce": 0x1C0, "x64": 0x8664, "x86": 0x14C}
LIBRARY_MACHINES = {**MACHINES, "ce": 0x1C2}
LARGEST = {"ce": 76 * 1024, "x64": 140 * 1024, "x86": 125 * 1024}
TRACING = 16 * 1024  # additional size of the tracing build
CE_SUBSYSTEM, CONSOLE_SUBSYSTEM = 9, 3
NEWEST_CE = (6, 0)
CE_SECTIONS = {b".text", b".data", b".rdata", b".pdata", b".bss", b".edata", b".idata", b".rsrc", b".reloc"}
DESKTOP_SYSTEM = {"kernel32.dll", "msvcrt.dll", "ws2_32.dll"}


def check_kind(flavour, dll):
    header = dll.OPTIONAL_HEADER
    assert dll.FILE_HEADER.Machine == MACHINES[flavour], hex(dll.FILE_HEADER.Machine)
    assert dll.is_dll() and not dll.FILE_HEADER.IMAGE_FILE_RELOCS_STRIPPED
    assert dll.DIRECTORY_ENTRY_BASERELOC and dll.DIRECTORY_ENTRY_RESOURCE
    assert header.Subsystem == (CE_SUBSYSTEM if flavour == "ce" else CONSOLE_SUBSYSTEM)
    if flavour == "ce":
        version = header.MajorSubsystemVersion, header.MinorSubsystemVersion
        assert version <= NEWEST_CE, version
        assert header.DllCharacteristics == 0, hex(header.DllCharacteristics)  # Windows CE ignores these
    assert not dll.get_warnings(), dll.get_warnings()
    resource = dll.VS_FIXEDFILEINFO[0].FileVersionMS
    assert (header.MajorImageVersion, header.MinorImageVersion) == (resource >> 16, resource & 0xFFFF), hex(resource)


def check_sections(flavour, dll):
    assert len(dll.sections) >= 5
    for section in dll.sections:
        name = section.Name.rstrip(b"\0")
        assert flavour != "ce" or name in CE_SECTIONS, name
        assert not (section.IMAGE_SCN_MEM_EXECUTE and section.IMAGE_SCN_MEM_WRITE), name
        print("%-9s %6d" % (name.decode(), section.Misc_VirtualSize))


def check_imports(flavour, dll):
    found = {library.dll.decode().lower(): {entry.name.decode() if entry.name else "by ordinal"
                                            for entry in library.imports} for library in dll.DIRECTORY_ENTRY_IMPORT}
    if flavour != "ce":
        assert found and set(found) <= DESKTOP_SYSTEM, set(found)
        return
    assert set(found) == {"coredll.dll", "ws2.dll"}, set(found)
    for library, names in found.items():
        known = set((pathlib.Path(__file__).parent / (library.replace(".dll", "_exports.txt"))).read_text().split())
        assert names and names <= known, names - known


def check_import_libraries(flavour, tools, folder):
    expected = X86_SYMBOLS if flavour == "x86" else {name.decode() for name in EXPORTS.values()}
    for library in "libPAVONIX.dll.a", "PAVONIX.lib":
        listing = subprocess.run([tools + "nm", folder / library], check=True, stdout=subprocess.PIPE, text=True).stdout
        symbols = set(re.findall(r" T (\w*Get\S+)$", listing, re.M))
        assert symbols == expected, (library, symbols)
    members = (folder / "PAVONIX.lib").read_bytes().split(b"`\n")[3:]
    for member in members:
        offset = 6 if member.startswith(b"\0\0\xff\xff") else 0
        assert int.from_bytes(member[offset:offset + 2], "little") == LIBRARY_MACHINES[flavour], member


def check_dll(flavour, path, largest):
    print(path.parent.name, path.stat().st_size)
    assert path.stat().st_size <= largest
    dll = pefile.PE(path)
    check_kind(flavour, dll)
    check_sections(flavour, dll)
    assert {symbol.ordinal: symbol.name for symbol in dll.DIRECTORY_ENTRY_EXPORT.symbols} == EXPORTS
    check_imports(flavour, dll)


def check_program(path):
    """The program that tests a device must start on an image that lacks the DLL's imports."""
    program = pefile.PE(path)
    header = program.OPTIONAL_HEADER
    assert (program.FILE_HEADER.Machine, header.Subsystem, program.is_dll()) == (MACHINES["ce"], CE_SUBSYSTEM, False)
    assert (header.MajorSubsystemVersion, header.MinorSubsystemVersion) <= NEWEST_CE
    assert header.SizeOfStackReserve == 64 * 1024, hex(header.SizeOfStackReserve)
    check_sections("ce", program)
    library, = program.DIRECTORY_ENTRY_IMPORT
    assert library.dll == b"coredll.dll", library.dll
    names = {entry.name.decode() for entry in library.imports}
    known = set((pathlib.Path(__file__).parent / "coredll_exports.txt").read_text().split())
    assert names <= known, names - known
    assert not any(re.match("[a-z_]|Crypt|.*Char|.*Section", name) for name in names), names


def main():
    flavour, tools, folder = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    if flavour == "ce":
        check_program(folder / "PavonixTest.exe")
    check_dll(flavour, folder / "PAVONIX.dll", LARGEST[flavour])
    check_dll(flavour, folder / "trace/PAVONIX.dll", LARGEST[flavour] + TRACING)
    check_import_libraries(flavour, tools, folder)


main()
