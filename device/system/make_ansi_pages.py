#!/usr/bin/env python3
"""Writes the tables of the device's ANSI code pages as C++ (see ansi_page.h).

    make_ansi_pages.py OUTPUT

The characters are those of Python's codecs. A look-alike is what is left of a
character that the page lacks when its marks or its width are taken away.
"""
import sys
import unicodedata

PAGES = {1252: "kWestern", 932: "kJapanese"}


def decoded(page, code):
    """The character of a code, None for a code without one."""
    try:
        text = code.to_bytes(1 if code < 0x100 else 2, "big").decode(f"cp{page}")
    except UnicodeDecodeError:
        return code if page == 1252 else None  # five bytes there are control characters
    return ord(text) if len(text) == 1 else None


def encoded(page, unit):
    if page == 1252 and decoded(page, unit & 0xFF) == unit:
        return unit & 0xFF
    return int.from_bytes(chr(unit).encode(f"cp{page}", "ignore"), "big")


def look_alike(unit):
    letters = [c for c in unicodedata.normalize("NFKD", chr(unit)) if not unicodedata.combining(c)]
    return ord(letters[0]) if len(letters) == 1 and " " <= letters[0] <= "~" else 0


def table(name, pairs):
    rows = [f"{{0x{key:X}, 0x{value:X}}}" for key, value in pairs]
    lines = ",\n".join("    " + ", ".join(rows[i:i + 6]) for i in range(0, len(rows), 6))
    return f"constexpr CodePair {name}[] = {{\n{lines}}};\n"


def main():
    text = ['#include "system/ansi_page.h"\n', "namespace pavonix::device {\n", "namespace {\n"]
    for page, name in PAGES.items():
        units = [unit for unit in range(0x10000) if unit >> 11 != 0x1B]
        codes = range(0x100 if page == 1252 else 0x10000)
        exact = [(unit, encoded(page, unit)) for unit in units]
        text.append(table(name + "Codes", [(unit, code) for unit, code in exact if code or unit == 0]))
        text.append(table(name + "Characters", [(c, decoded(page, c)) for c in codes if decoded(page, c) is not None]))
        lacking = [unit for unit, code in exact if not code and unit]
        text.append(table(name + "LookAlikes", [(u, look_alike(u)) for u in lacking if look_alike(u)]))
    text.append("} // namespace\n")
    for name in PAGES.values():
        text.append(f"const AnsiPage {name} = {{{name}Codes, {name}Characters, {name}LookAlikes}};\n")
    text.append("} // namespace pavonix::device\n")
    with open(sys.argv[1], "w") as output:
        output.write("\n".join(text))


main()
