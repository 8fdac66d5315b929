#!/usr/bin/python3
"""Makes the kit under build/kit/: archives, the cabinet, Debian packages, the source, checksums and the SPDX list.

Usage: make_kit.py [--without-debian] [FOLDER]
It replaces FOLDER, build/kit by default. --without-debian omits the packages, which are a build of their own.
The DLLs must be in build/. The same commit gives the same bytes: every time stamp is that of the commit.
"""

import argparse
import gzip
import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import time
import zipfile

from components import COMPONENTS, LINKED
from contents import ARCHIVES, BUILDS, CABINETS, PAGES
from make_cab import make_cab
from pages import render, with_version
from spdx import document

SOURCE = pathlib.Path(__file__).resolve().parents[1]
VERSION = re.findall(r'PAVONIX_VERSION "(.*)"', (SOURCE / "include/pavonix/pavonix.h").read_text())[0]


def git(*arguments):
    return subprocess.run(["git", "-C", SOURCE, *arguments], check=True, stdout=subprocess.PIPE).stdout


def place_pages(places):
    """{place: bytes} of the pages, as HTML, and their pictures; links lead only to files of the archive."""
    html = {source: "html/" + pathlib.Path(source).stem.lower() + ".html" for source in PAGES}
    origins = html | {origin: place for place, origin in places.items()}
    files = {}
    for source, place in html.items():
        text, pictures = render(SOURCE, source, place, origins, VERSION)
        files[place] = text.encode()
        files |= {"html/" + picture: (SOURCE / "docs" / picture).read_bytes() for picture in pictures}
    return files


def write_zip(kit, name, files, epoch):
    moment = time.gmtime(epoch)[:6]
    with zipfile.ZipFile(kit / f"{name}.zip", "w", zipfile.ZIP_DEFLATED) as archive:
        for place in sorted(files):
            entry = zipfile.ZipInfo(f"{name}/{place}", moment)
            entry.compress_type, entry.external_attr = zipfile.ZIP_DEFLATED, 0o644 << 16
            archive.writestr(entry, files[place])


def list_components(flavour):
    """The text that names the components of each file of an archive, and their licences."""
    lines = ["Pavonix itself: MIT, see LICENSE.", ""]
    for (build, file), names in LINKED.items():
        if build in BUILDS[flavour]:
            lines += [f"{file} ({build}) also holds code of", *(f"  {name}: {COMPONENTS[name].licence}" for name in sorted(names)), ""]
    return "\n".join(lines)


def make_archives(kit, epoch):
    for flavour, places in ARCHIVES.items():
        files = {place: (SOURCE / origin).read_bytes() for place, origin in places.items()}
        texts = {place: files[place].decode() for place in files if place.endswith(".txt") and "/" not in place}
        texts["licenses/CONTENTS.txt"] = list_components(flavour)
        # old editors of Windows need CR LF
        files |= {place: with_version(text, VERSION).replace("\n", "\r\n").encode() for place, text in texts.items()}
        write_zip(kit, f"pavonix-{VERSION}-{flavour}", files | place_pages(places), epoch)


def make_source(kit, epoch):
    """Makes the source archive, and returns it uncompressed."""
    name = f"pavonix-{VERSION}"
    tar = git("archive", "--format=tar", f"--prefix={name}/", "HEAD")
    with open(kit / f"{name}.tar.gz", "wb") as target:
        with gzip.GzipFile("", "wb", 9, target, mtime=epoch) as packed:
            packed.write(tar)
    return tar


def make_debian_packages(kit, tar, epoch):
    work = kit / "work"
    work.mkdir()
    subprocess.run(["tar", "-x", "-C", work], input=tar, check=True)
    tree = work / f"pavonix-{VERSION}"
    shutil.copytree(tree / "packaging/debian", tree / "debian")
    date = time.strftime("%a, %d %b %Y %H:%M:%S +0000", time.gmtime(epoch))
    (tree / "debian/changelog").write_text(
        f"pavonix ({VERSION}) unstable; urgency=medium\n\n  * Version {VERSION}: see CHANGELOG.md.\n\n"
        f" -- The Pavonix authors <maintainers@pavonix.example>  {date}\n")
    subprocess.run(["dpkg-buildpackage", "--build=full", "-uc", "-us"], cwd=tree, check=True)
    for pattern in ("*.deb", "*.dsc", "*.tar.xz"):
        for package in work.glob(pattern):
            shutil.move(package, kit / package.name)
    shutil.rmtree(work)


def write_lists(kit, epoch):
    names = sorted(path.name for path in kit.iterdir())
    (kit / f"pavonix-{VERSION}.spdx").write_text(document(VERSION, epoch, {name: kit / name for name in names}))
    names.append(f"pavonix-{VERSION}.spdx")
    sums = [f"{hashlib.sha256((kit / name).read_bytes()).hexdigest()}  {name}\n" for name in sorted(names)]
    (kit / "SHA256SUMS").write_text("".join(sums))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--without-debian", action="store_true")
    parser.add_argument("folder", nargs="?", type=pathlib.Path, default=SOURCE / "build/kit")
    options = parser.parse_args()
    kit = options.folder
    shutil.rmtree(kit, ignore_errors=True)
    kit.mkdir(parents=True)
    epoch = int(git("log", "-1", "--format=%ct"))
    os.environ["SOURCE_DATE_EPOCH"] = str(epoch)
    make_archives(kit, epoch)
    for application, (name, to_windows, to_own_folder) in CABINETS.items():
        make_cab(kit / f"pavonix-{VERSION}-{name}.cab", application, [SOURCE / file for file in to_windows],
                 [SOURCE / file for file in to_own_folder])
    tar = make_source(kit, epoch)
    if not options.without_debian:
        make_debian_packages(kit, tar, epoch)
    write_lists(kit, epoch)


if __name__ == "__main__":
    main()
