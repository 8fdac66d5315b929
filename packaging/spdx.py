"""What is inside the kit, as an SPDX 2.3 document (ISO/IEC 5962) in its tag-value form."""

import hashlib
import time

LIBTOMMATH_VERSION = "1.2.0"


def _package(name, version, licence, identifier, checksum=None):
    lines = [f"PackageName: {name}", f"SPDXID: SPDXRef-{identifier}", f"PackageVersion: {version}",
             "PackageDownloadLocation: NOASSERTION", "FilesAnalyzed: false", f"PackageLicenseConcluded: {licence}",
             f"PackageLicenseDeclared: {licence}", "PackageCopyrightText: NOASSERTION"]
    if checksum:
        lines.append(f"PackageChecksum: SHA256: {checksum}")
    return "\n".join(lines) + "\n\n"


def document(version, epoch, files):
    """files: name to path of each file of the kit. DLLs hold LibTomMath; the Debian packages depend on it."""
    created = time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(epoch))
    text = ("SPDXVersion: SPDX-2.3\nDataLicense: CC0-1.0\nSPDXID: SPDXRef-DOCUMENT\n"
            f"DocumentName: pavonix-{version}\nDocumentNamespace: urn:pavonix:{version}:{epoch}\n"
            f"Creator: Organization: The Pavonix authors\nCreated: {created}\n\n")
    text += _package("LibTomMath", LIBTOMMATH_VERSION, "Unlicense", "libtommath")
    relations = []
    for number, (name, path) in enumerate(sorted(files.items()), 1):
        checksum = hashlib.sha256(path.read_bytes()).hexdigest()
        holds = name.endswith((".zip", ".cab"))
        licence = "MIT AND Unlicense" if holds else "MIT"
        text += _package(name, version, licence, f"file-{number}", checksum)
        relations.append(f"Relationship: SPDXRef-DOCUMENT DESCRIBES SPDXRef-file-{number}\n")
        if holds or name.endswith(".deb"):
            relation = "CONTAINS" if holds else "DEPENDS_ON"
            relations.append(f"Relationship: SPDXRef-file-{number} {relation} SPDXRef-libtommath\n")
    return text + "".join(relations)
