"""Facts on the pages, compared with the sources: the sample shop's codes, the example of a token, the scenarios."""

import re
import sys
import tempfile
import unittest

from scripted_shop import PROGRAMS, SOURCE, run


class DocsTest(unittest.TestCase):
    def test_codes_of_the_sample_shop(self):
        kinds = re.findall(r'\{(\d+), (\d+), "(.*)"\}', (SOURCE / "tools/shop/errors.h").read_text())
        rows = re.findall(r"^    (9\d\d) +(\d+) +(.*)", (SOURCE / "docs/results.md").read_text(), re.M)
        self.assertEqual(sorted((code, status, text) for status, code, text in kinds), sorted(rows))

    def printed(self, pattern, *words):
        """What the pattern finds in the lines that pavonix prints."""
        return re.findall(pattern, "\n".join(run(PROGRAMS / "pavonix", *words)[1]), re.M)

    def test_exit_codes(self):
        """The manual page has those of --help."""
        page = (SOURCE / "docs/man/pavonix.1").read_text().partition("EXIT STATUS")[2].partition(".El")[0]
        self.assertEqual([(code, text[0].upper() + text[1:]) for code, text in self.printed(r"^  (\d+) +(.*)", "--help")],
                         re.findall(r"^\.It (\d+)\n(.*)\.$", page, re.M))

    def test_names_of_rules(self):
        """The table of the trace names faults as the programs do."""
        rules = self.printed(r"^([a-z][a-z0-9-]+) +(?:error|warning) ", "rules")
        rows = re.findall(r"^\| `no head: (.*?)\|", (SOURCE / "docs/results.md").read_text(), re.M)
        self.assertLessEqual({name for row in rows for name in re.findall(r"[a-z-]+", row)}, set(rules))

    def test_token_example(self):
        page = (SOURCE / "docs/token.md").read_text()
        key, token, *says = re.search(r"cat key.xml\n(.*)\n\$ python3 \S+ key.xml (.*)\n((?:.*\n)+?)```", page).groups()
        self.assertIn(f"Public-Key: {key}\n", (SOURCE / "tests/data/device.profile").read_text())
        with tempfile.NamedTemporaryFile("w") as file:
            file.write(key)
            file.flush()
            code, lines = run(sys.executable, "-B", SOURCE / "examples/python/verify_token.py", file.name, token)
        self.assertEqual((code, lines), (3, says[0].splitlines()))

    def test_every_odd_reply_and_profile_is_documented(self):
        rows = "".join((SOURCE / f"tests/e2e/rows/{name}.cpp").read_text() for name in ("replies", "bodies", "profiles"))
        defined = re.findall(r'(?:Row|Status|Stored|StoredToTheEnd)\(\s*"(\w+)"|\.name = "(\w+)"', rows)
        named = re.findall(r"`([a-z0-9]+_[a-z0-9_]+)`", (SOURCE / "docs/results.md").read_text())
        self.assertEqual(sorted(a or b for a, b in defined), sorted(named),
                         "docs/results.md, Odd replies and Odd profiles, must name each row of these files once")
