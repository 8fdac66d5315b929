#!/usr/bin/python3
"""Writes an import library as Microsoft's linkers expect it, from a .def file.

    write_import_library.py MACHINE DEF LIBRARY     MACHINE: thumb, x64 or x86

GNU dlltool knows neither the short import objects those linkers want nor the
machine type (THUMB) of device projects. The layout is the one published as
"PE Format": an archive of one short record for each export, and three small
objects that make up the import descriptor.
"""
import struct
import sys

# machine number, pointer size, relocation "address without the image base"
MACHINES = {"thumb": (0x1C2, 4, 2), "x86": (0x14C, 4, 7), "x64": (0x8664, 8, 3)}

EXTERNAL, STATIC, SECTION = 2, 3, 0x68  # storage classes of symbols
READ_WRITE_DATA = 0xC0000040
ALIGN_2, ALIGN_4, ALIGN_8 = 0x200000, 0x300000, 0x400000


def read_def(path):
    """The DLL's name and its exports as (name, ordinal)."""
    with open(path) as lines:
        words = [line.split() for line in lines if line.strip() and not line.startswith(";")]
    library = next(line[1] for line in words if line[0] == "LIBRARY")
    return library, [(name, int(ordinal[1:])) for name, ordinal in words[words.index(["EXPORTS"]) + 1:]]


def coff_object(machine, sections, symbols):
    """sections: (name, data, alignment, [(offset, symbol index)]); symbols: (name, section number, class)."""
    number, pointer, relocation = MACHINES[machine]
    position = 20 + 40 * len(sections)
    headers, bodies = b"", b""
    for name, data, alignment, fixups in sections:
        body = data + b"".join(struct.pack("<IIH", offset, symbol, relocation) for offset, symbol in fixups)
        headers += struct.pack("<8sIIIIIIHHI", name, 0, 0, len(data), position, position + len(data) if fixups else 0,
                               0, len(fixups), 0, READ_WRITE_DATA | alignment)
        position += len(body)
        bodies += body
    table, strings = b"", b""
    for name, section, storage in symbols:
        field = name if len(name) <= 8 else struct.pack("<II", 0, 4 + len(strings))
        strings += name + b"\0" if len(name) > 8 else b""
        table += struct.pack("<8sIhHBB", field, 0, section, 0, storage, 0)
    header = struct.pack("<HHIIIHH", number, len(sections), 0, position, len(symbols), 0, 0x100 if pointer == 4 else 0)
    return header + headers + bodies + table + struct.pack("<I", 4 + len(strings)) + strings


def descriptor_objects(machine, library):
    """The three objects every import library has, as (symbol, bytes)."""
    pointer = MACHINES[machine][1]
    stem = library.rsplit(".", 1)[0].encode()
    descriptor, end, thunks = b"__IMPORT_DESCRIPTOR_" + stem, b"__NULL_IMPORT_DESCRIPTOR", b"\x7f%s_NULL_THUNK_DATA" % stem
    name = library.encode() + b"\0"
    name += b"\0" * (len(name) % 2)
    align = ALIGN_8 if pointer == 8 else ALIGN_4
    yield descriptor, coff_object(machine, [
        (b".idata$2", bytes(20), ALIGN_4, [(12, 2), (0, 3), (16, 4)]), (b".idata$6", name, ALIGN_2, [])], [
        (descriptor, 1, EXTERNAL), (b".idata$2", 1, SECTION), (b".idata$6", 2, STATIC), (b".idata$4", 0, SECTION),
        (b".idata$5", 0, SECTION), (end, 0, EXTERNAL), (thunks, 0, EXTERNAL)])
    yield end, coff_object(machine, [(b".idata$3", bytes(20), ALIGN_4, [])], [(end, 1, EXTERNAL)])
    yield thunks, coff_object(machine, [
        (b".idata$5", bytes(pointer), align, []), (b".idata$4", bytes(pointer), align, [])], [(thunks, 1, EXTERNAL)])


def short_import(machine, library, name, ordinal):
    """One function, imported by name; x86's decoration is removed in the DLL's name for it."""
    symbol = ("_" + name if machine == "x86" else name).encode()
    name_type = 3 if machine == "x86" else 1
    data = symbol + b"\0" + library.encode() + b"\0"
    header = struct.pack("<HHHHIIHH", 0, 0xFFFF, 0, MACHINES[machine][0], 0, len(data), ordinal, name_type << 2)
    return symbol, header + data


def member(name, data):
    header = b"%-16s%-12d%-6s%-6s%-8s%-10d`\n" % (name, 0, b"", b"", b"0", len(data))
    return header + data + b"\n" * (len(data) % 2)


def archive(library, objects):
    """objects: ([symbols], bytes). Two symbol tables lead: by member, and sorted by name."""
    names = [symbol for symbols, _ in objects for symbol in symbols]
    order = sorted((symbol, index) for index, (symbols, _) in enumerate(objects, 1) for symbol in symbols)
    table = b"".join(symbol + b"\0" for symbol in names)
    sizes = [4 + 4 * len(names) + len(table), 8 + 4 * len(objects) + 2 * len(names) + len(table)]
    position = 8 + sum(60 + size + size % 2 for size in sizes)
    members, offsets = [], []
    for _, data in objects:
        members.append(member(library.encode() + b"/", data))
        offsets.append(position)
        position += len(members[-1])
    by_symbol = [offset for offset, (symbols, _) in zip(offsets, objects) for _ in symbols]
    first = struct.pack(">I%dI" % len(names), len(names), *by_symbol) + table
    second = struct.pack("<I%dI" % len(offsets), len(offsets), *offsets)
    second += struct.pack("<I%dH" % len(order), len(order), *(index for _, index in order))
    second += b"".join(symbol + b"\0" for symbol, _ in order)
    return b"!<arch>\n" + member(b"/", first) + member(b"/", second) + b"".join(members)


def main():
    machine, definition, target = sys.argv[1:]
    library, exports = read_def(definition)
    objects = [([symbol], data) for symbol, data in descriptor_objects(machine, library)]
    for name, ordinal in exports:
        symbol, data = short_import(machine, library, name, ordinal)
        objects.append(([symbol, b"__imp_" + symbol], data))
    with open(target, "wb") as output:
        output.write(archive(library, objects))


main()
