"""What is inside the kit, as an SPDX 2.3 document (ISO/IEC 5962) in its tag-value form."""

import hashlib
import subprocess
import time

LIBTOMMATH_VERSION = "1.2.0"
# The Debian packages of which pavonix.exe holds code, and their licences.
IN_THE_PROGRAM = {"libboost-dev": "BSL-1.0", "libcli11-dev": "BSD-3-Clause", "nlohmann-json3-dev": "MIT",
                  "mingw-w64-x86-64-dev": "ZPL-2.1 AND MIT AND BSD-3-Clause",
                  "g++-mingw-w64-x86-64-posix": "GPL-3.0-or-later WITH GCC-exception-3.1"}


def _package(name, version, licence, identifier, checksum=None):
    lines = [f"PackageName: {name}", f"SPDXID: SPDXRef-{identifier}", f"PackageVersion: {version}",
             "PackageDownloadLocation: NOASSERTION", "FilesAnalyzed: false", f"PackageLicenseConcluded: {licence}",
             f"PackageLicenseDeclared: {licence}", "PackageCopyrightText: NOASSERTION"]
    if checksum:
        lines.append(f"PackageChecksum: SHA256: {checksum}")
    return "\n".join(lines) + "\n\n"


def _identifier(package):
    return package.replace("+", "x")  # letters, digits, points and hyphens


def _debian_version(package):
    return subprocess.run(["dpkg-query", "-W", "-f", "${Version}", package], check=True, stdout=subprocess.PIPE,
                          text=True).stdout


def document(version, epoch, files):
    """files: name to path of each file of the kit. DLLs hold LibTomMath, and so does pavonix.exe, which is in one archive
    with them; the Debian packages depend on it."""
    created = time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(epoch))
    text = ("SPDXVersion: SPDX-2.3\nDataLicense: CC0-1.0\nSPDXID: SPDXRef-DOCUMENT\n"
            f"DocumentName: pavonix-{version}\nDocumentNamespace: urn:pavonix:{version}:{epoch}\n"
            f"Creator: Organization: The Pavonix authors\nCreated: {created}\n\n")
    text += _package("LibTomMath", LIBTOMMATH_VERSION, "Unlicense", "libtommath")
    for package, licence in IN_THE_PROGRAM.items():
        text += _package(package, _debian_version(package), licence, _identifier(package))
    relations = []
    for number, (name, path) in enumerate(sorted(files.items()), 1):
        holds = name.endswith((".zip", ".cab"))
        parts = {"libtommath": "Unlicense"} if holds or name.endswith(".deb") else {}
        if name.endswith("-windows.zip"):
            parts |= {_identifier(package): f"({licence})" for package, licence in IN_THE_PROGRAM.items()}
        licence = " AND ".join(["MIT", *(parts.values() if holds else [])])
        checksum = hashlib.sha256(path.read_bytes()).hexdigest()
        text += _package(name, version, licence, f"file-{number}", checksum)
        relations.append(f"Relationship: SPDXRef-DOCUMENT DESCRIBES SPDXRef-file-{number}\n")
        relation = "CONTAINS" if holds else "DEPENDS_ON"
        relations += [f"Relationship: SPDXRef-file-{number} {relation} SPDXRef-{part}\n" for part in parts]
    return text + "".join(relations)
