"""The contents of the kit, read with other programs than those that made it."""

import html.parser
import os
import pathlib
import re
import struct
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree

SOURCE = pathlib.Path(__file__).resolve().parents[2]
KIT = pathlib.Path(os.environ["PAVONIX_KIT"])
UNPACKED = pathlib.Path(os.environ["PAVONIX_UNPACKED"])
VERSION = re.findall(r'PAVONIX_VERSION "(.*)"', (SOURCE / "include/pavonix/pavonix.h").read_text())[0]


def output_of(*command, **options):
    return subprocess.run([str(word) for word in command], check=True, stdout=subprocess.PIPE, timeout=100,
                          **options).stdout


def files_below(folder):
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.targets, self.anchors = [], set()
        self.feed(path.read_text())

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("href", "src"):
                self.targets.append(value)
            elif name == "id":
                self.anchors.add(value)


class SetupRecord:
    """The first file of the cabinet, read as a device does."""

    def __init__(self, record):
        (self.magic, _, self.length, _, _, self.processor, *self.versions) = struct.unpack_from("<4s9I", record)
        counts, places = struct.unpack_from("<6H", record, 48), struct.unpack_from("<6I", record, 60)
        strings = dict(self._sized(record, places[0], counts[0], "<H"))
        folders = {number: [strings[part].rstrip(b"\0").decode() for part, in struct.iter_unpack("<H", parts[:-2])]
                   for number, parts in self._sized(record, places[1], counts[1], "<H")}
        self.files, at = {}, places[2]
        for _ in range(counts[2]):
            number, folder, _, _, length = struct.unpack_from("<HHHIH", record, at)
            name = record[at + 12:at + 12 + length]
            self.files[number] = "\\".join([*folders[folder], name.rstrip(b"\0").decode()])
            at += 12 + length
        self.end = at

    @staticmethod
    def _sized(record, at, count, number):
        for _ in range(count):
            identifier, length = struct.unpack_from("<HH", record, at)
            yield identifier, record[at + 4:at + 4 + length]
            at += 4 + length


class ContentsTest(unittest.TestCase):
    def test_checksums_and_the_list_of_contents(self):
        output_of("sha256sum", "--check", "--strict", "SHA256SUMS", cwd=KIT)
        sums = dict(reversed(line.split("  ")) for line in (KIT / "SHA256SUMS").read_text().splitlines())
        self.assertEqual(set(sums), {path.name for path in KIT.iterdir()} - {"SHA256SUMS"})
        inside = dict(re.findall(r"PackageName: (\S+)\n(?:.+\n)+PackageChecksum: SHA256: (\w+)",
                                 (KIT / f"pavonix-{VERSION}.spdx").read_text()))
        self.assertEqual(inside, {name: value for name, value in sums.items() if not name.endswith(".spdx")})

    def test_made_again_it_is_the_same(self):
        with tempfile.TemporaryDirectory() as folder:
            again = pathlib.Path(folder, "elsewhere")
            output_of("/usr/bin/python3", "-B", SOURCE / "packaging/make_kit.py", "--without-debian", again,
                      env={**os.environ, "TZ": "Asia/Tokyo", "LC_ALL": "C"})
            self.assertEqual((again / "SHA256SUMS").read_text(), (KIT / "SHA256SUMS").read_text())

    def test_links_lead_inside_the_archive(self):
        for flavour in ("ce-armv4", "windows"):
            pages = {path: Page(path) for path in (UNPACKED / flavour).glob("html/*.html")}
            self.assertIn(UNPACKED / flavour / "html/index.html", pages)
            for path, page in pages.items():
                for target in page.targets:
                    with self.subTest(flavour=flavour, page=path.name, target=target):
                        place, _, anchor = target.partition("#")
                        if re.match("(https?|mailto):", target):
                            continue
                        found = (path.parent / place).resolve() if place else path
                        self.assertTrue(found.is_relative_to(UNPACKED / flavour) and found.exists())
                        self.assertTrue(not anchor or found not in pages or anchor in pages[found].anchors)

    def test_pages_are_for_the_archive(self):
        for path in UNPACKED.glob("*/html/*.html"):
            with self.subTest(page=path):
                text = path.read_text()
                self.assertEqual(text.count(f'<a href="index.html">Pavonix {VERSION}</a>'), 1)
                strange = re.findall(r"language-mermaid|\S+\.md</a>|\b[Pp]avonix.VERSION|\./dev \w+", text)
                self.assertEqual(strange if path.name != "changelog.html" else [], [])
        texts = [path.read_bytes() for path in UNPACKED.glob("*/*.txt")]
        self.assertEqual([text.count(b"\n") - text.count(b"\r\n") for text in texts], [0] * 4)

    def test_project_files_name_what_is_there(self):
        projects = [*UNPACKED.rglob("*.vcproj"), *UNPACKED.rglob("*.csproj")]
        self.assertEqual(len(projects), 4)
        for project in projects:
            tree = xml.etree.ElementTree.parse(project)
            values = [value for element in tree.iter() for name, value in element.attrib.items()
                      if name in ("RelativePath", "Include", "AdditionalIncludeDirectories")]
            for element in tree.iter("DeploymentTool"):
                for name, folder, *_ in (entry.split("|") for entry in element.get("AdditionalFiles").split(";")):
                    values.append(folder.replace("$(ProjectDir)", "") + "\\" + name)
            for value in values:
                if "\\" in value or "." in value and not value.startswith("System"):
                    with self.subTest(project=project, value=value):
                        self.assertTrue((project.parent / value.replace("\\", "/")).exists())

    def test_versions_of_the_libraries(self):
        wanted = [text.encode("utf-16-le") for text in ("FileVersion\0", f"\0{VERSION}\0")]
        for library in UNPACKED.rglob("PAVONIX.dll"):
            with self.subTest(library):
                self.assertTrue(all(text in library.read_bytes() for text in wanted))
                self.assertEqual("tracing build".encode("utf-16-le") in library.read_bytes(),
                                 library.parent.name == "trace")

    def installed_by(self, cabinet):
        """{path on the device: bytes} of a cabinet, which is in the order that a device wants."""
        with tempfile.TemporaryDirectory() as folder:
            output_of("cabextract", "-q", "-d", folder, cabinet)
            raw = files_below(pathlib.Path(folder))
        names = [line.split(b"|")[2].strip().decode() for line in output_of("cabextract", "-l", cabinet).splitlines()
                 if line.count(b"|") == 2 and b"." in line.split(b"|")[2]]
        numbers = [int(name[-3:]) for name in names]
        self.assertEqual(numbers, [0, *range(len(names) - 1, 0, -1)])
        self.assertTrue(all(re.fullmatch(r"[0-9A-Za-z]{8}\.\d{3}", name) for name in names), names)

        record = SetupRecord(raw[names[0]])
        self.assertEqual((record.magic, record.length, record.end), (b"MSCE", len(raw[names[0]]), len(raw[names[0]])))
        self.assertEqual((record.processor, record.versions[:2]), (2577, [5, 0]))
        installed = {place: raw[name] for name in names[1:] for place in [record.files.pop(int(name[-3:]))]}
        self.assertEqual(record.files, {})
        return installed

    def test_cabinets_install_files_where_devices_search_them(self):
        for prefix, application, library, programs in (
                ("", "Pavonix", "%CE2%\\", []), ("test-", "PavonixTest", "%CE1%\\PavonixTest\\", ["PavonixTest.exe"])):
            own = f"%CE1%\\{application}\\"
            self.assertEqual(self.installed_by(KIT / f"pavonix-{VERSION}-{prefix}ce-armv4.cab"), {
                library + "PAVONIX.dll": (UNPACKED / "ce-armv4/PAVONIX.dll").read_bytes(),
                own + "LICENSE": (SOURCE / "LICENSE").read_bytes(),
                own + "LibTomMath.txt": (SOURCE / "licenses/LibTomMath.txt").read_bytes()} | {
                    own + name: (UNPACKED / "ce-armv4" / name).read_bytes() for name in programs})

    def test_source_archive_is_the_commit(self):
        name = f"pavonix-{VERSION}"
        listed = output_of("tar", "-tzf", KIT / f"{name}.tar.gz").decode().splitlines()
        tree = output_of("git", "-C", SOURCE, "ls-tree", "-r", "--name-only", "HEAD").decode().splitlines()
        self.assertEqual(sorted(path for path in listed if not path.endswith("/")),
                         sorted(f"{name}/{path}" for path in tree))
