#!/usr/bin/env python3
"""Writes debian/PACKAGE.copyright for each package: our licence, the package's other components, and the licences that
must be passed on with it, from the packages that the build used.

Usage: write_copyright.py, in the source's top folder
"""

import pathlib

from components import COMPONENTS, DEBIAN_PACKAGES, components_of


def copyright_of(package, files):
    names = components_of("linux", files)
    held = [name for name in names if not COMPONENTS[name].loaded]
    loaded = [name for name in names if COMPONENTS[name].loaded]
    text = "Pavonix\n\n" + pathlib.Path("LICENSE").read_text()
    for title, listed in (("Code of these is in the package", held), ("Loaded from packages of their own", loaded)):
        text += f"\n{title}:\n\n" + "".join(f"- {name}: {COMPONENTS[name].licence}\n" for name in listed) if listed else ""
    text += "\nThe GNU licences are in /usr/share/common-licenses/GPL-3 and /usr/share/common-licenses/LGPL-2.1.\n"
    for name in held:
        if COMPONENTS[name].text:
            source = pathlib.Path("/usr/share/doc", COMPONENTS[name].text, "copyright")
            text += f"\n{'=' * 70}\n{name}\n{'=' * 70}\n\n{source.read_text()}"
    return text


for debian_package, program_files in DEBIAN_PACKAGES.items():
    pathlib.Path(f"debian/{debian_package}.copyright").write_text(copyright_of(debian_package, program_files))
