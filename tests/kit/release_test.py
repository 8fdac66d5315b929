"""check_release.py prints each reason why a commit cannot be released."""

import pathlib
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
HEADER = '#define PAVONIX_VERSION "1.10.2"\n#define PAVONIX_VERSION_NUMBER 0x010a02\n'
CHANGES = "# Changes\n\n## 1.10.2, 2026-01-31\n\nFixed:\n\n- A crash.\n\n## 1.10.1, 2026-01-01\n"

# Changes, and a part of the printed reason.
ROWS = [
    ({}, ""),
    ({"header": HEADER.replace('"1.10.2"', '"1.10.1"')}, "PAVONIX_VERSION "),
    ({"header": HEADER.replace("0x010a02", "0x011002")}, "PAVONIX_VERSION_NUMBER"),
    ({"changes": CHANGES.replace("1.10.2, 2026-01-31", "1.10.2")}, "begins with"),
    ({"changes": CHANGES.replace("2026-01-31", "2999-01-01")}, "in the future"),
    ({"changes": CHANGES.replace("Fixed:\n\n- A crash.\n\n", "New things.\n\n")}, "lists no fixed faults"),
    ({"after": "echo x >> CHANGELOG.md"}, "not everything is committed"),
    ({"after": "echo x > new"}, "not everything is committed"),
    ({"after": "git tag v1.10.2"}, "the tag"),
    ({"version": "1.10"}, "not a version"),
]


class ReleaseTest(unittest.TestCase):
    def reasons(self, header=HEADER, changes=CHANGES, after="true", version="1.10.2"):
        with tempfile.TemporaryDirectory() as folder:
            (pathlib.Path(folder) / "include/pavonix").mkdir(parents=True)
            (pathlib.Path(folder) / "include/pavonix/pavonix.h").write_text(header)
            (pathlib.Path(folder) / "CHANGELOG.md").write_text(changes)
            subprocess.run("git init -q && git add . && git -c user.name=x -c user.email=x@y commit -qm first && " + after,
                           shell=True, check=True, cwd=folder)
            done = subprocess.run([SOURCE / "packaging/check_release.py", folder, version], stderr=subprocess.PIPE,
                                  text=True)
            self.assertEqual(done.returncode, 1 if done.stderr else 0)
            return done.stderr.splitlines()

    def test_each_reason_is_named(self):
        for changed, words in ROWS:
            with self.subTest(**changed):
                lines = self.reasons(**changed)
                self.assertEqual(len(lines), 1 if words else 0, lines)
                self.assertTrue(not words or words in lines[0], lines)
