"""The kit's components as an SPDX 2.3 document (ISO/IEC 5962) in tag-value form."""

import hashlib
import re
import subprocess
import time

from components import COMPONENTS, DEBIAN_PACKAGES, component_of, components_of
from contents import BUILDS


def _package(name, version, licence, identifier, checksum=None):
    lines = [f"PackageName: {name}", f"SPDXID: SPDXRef-{identifier}", f"PackageVersion: {version}",
             "PackageDownloadLocation: NOASSERTION", "FilesAnalyzed: false", f"PackageLicenseConcluded: {licence}",
             f"PackageLicenseDeclared: {licence}", "PackageCopyrightText: NOASSERTION"]
    if checksum:
        lines.append(f"PackageChecksum: SHA256: {checksum}")
    return "\n".join(lines) + "\n\n"


def _identifier(component):
    return re.sub(r"[^A-Za-z0-9.]+", "-", component)


def _versions():
    """The versions of the components on this machine, by name."""
    listed = subprocess.run(["dpkg-query", "-W", "-f", "${Package} ${Version}\n"], check=True, stdout=subprocess.PIPE,
                            text=True).stdout
    found = {}
    for package, version in (line.split() for line in listed.splitlines()):
        found.setdefault(component_of(package), version)
    return found


def _inside(name):
    """The components whose code is in a file of the kit, and those that its programs load."""
    if name.endswith(".deb"):
        package = name.partition("_")[0].removesuffix("-dbgsym")
        used = components_of("linux", DEBIAN_PACKAGES[package])
        loaded = {component for component in used if COMPONENTS[component].loaded}
        return sorted(set(used) - loaded), sorted(loaded)
    flavour = next((flavour for flavour in BUILDS if name.endswith((f"-{flavour}.zip", f"-{flavour}.cab"))), None)
    return sorted({component for build in BUILDS.get(flavour, []) for component in components_of(build)}), []


def document(version, epoch, files):
    """Returns the document; files: name to path of each file of the kit."""
    created = time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(epoch))
    text = ("SPDXVersion: SPDX-2.3\nDataLicense: CC0-1.0\nSPDXID: SPDXRef-DOCUMENT\n"
            f"DocumentName: pavonix-{version}\nDocumentNamespace: urn:pavonix:{version}:{epoch}\n"
            f"Creator: Organization: The Pavonix authors\nCreated: {created}\n\n")
    versions = _versions()
    for name, component in COMPONENTS.items():
        text += _package(name, versions.get(name, "NOASSERTION"), component.licence, _identifier(name))
    relations = []
    for number, (name, path) in enumerate(sorted(files.items()), 1):
        held, loaded = _inside(name)
        licence = " AND ".join(["MIT", *dict.fromkeys(f"({COMPONENTS[part].licence})" for part in held)])
        text += _package(name, version, licence, f"file-{number}", hashlib.sha256(path.read_bytes()).hexdigest())
        relations.append(f"Relationship: SPDXRef-DOCUMENT DESCRIBES SPDXRef-file-{number}\n")
        for relation, parts in (("CONTAINS", held), ("DEPENDS_ON", loaded)):
            relations += [f"Relationship: SPDXRef-file-{number} {relation} SPDXRef-{_identifier(part)}\n" for part in parts]
    return text + "".join(relations)
