"""The trace and the client's diagnosis of the same calls: the shop's faults by name, and the fuzzers' replies."""

import json
import pathlib
import re
import unittest

from client_fixture import ClientTest
from odd_server import OddServer
from shop_fixture import PROGRAMS, run

SOURCE = pathlib.Path(__file__).resolve().parents[2]
REPLIES: list[tuple[str, list]] = [(path.name, [path.read_bytes()]) for path in sorted((SOURCE / "fuzz/seeds/reply").iterdir())]
HEAD = b"HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n"
# Those that the two once contradicted each other about, and one of each other kind.
REPLIES += [("telnet", [b"\x15 telnet"]), ("line feeds", [b"HTTP/1.1 200 OK\n\r\nabc"]),
            ("zero", [b"HTTP/1.1 \0" + HEAD]), ("carriage returns", [b"HTTP/1.1 200 OK\r\rabc"]),
            ("empty line", [b"\r\n" + HEAD + b"hello"]), ("head cut", [HEAD[:30]]),
            ("body apart", [HEAD + b"he", 0.1, b"llo"])]
SILENT = {"silent", "closed-empty", "reset-early"}
# What the trace calls head-in-pieces because it sees no later byte than the library, and the client, which reads on, knows.
LATER = {"head-in-pieces", "head-without-end", "head-too-long", "head-zero-byte", "bare-line-feeds",
         "bare-carriage-returns"}
NO_LENGTH = {"length-missing", "length-case", "length-hidden", "length-no-number", "length-zero", "chunked"}


class TraceAndDiagnosis(ClientTest):
    def compare(self, name, port, path="/x"):
        trace = pathlib.Path(f"{self.profile}.trace.txt")
        trace.unlink(missing_ok=True)
        done = run(f"{PROGRAMS}/pavonix", "good", "--type", "3", "--id", "5", "--url", f"http://127.0.0.1:{port}{path}",
                   "--profile", self.profile, "--out", self.target, "--force", "--trace", "--json", "--timeout", "1")
        answer, traced = json.loads(done.stdout), trace.read_text()
        with self.subTest(name, trace=traced, answer=answer):
            rules = {finding["rule"] for finding in answer.get("findings", [])}
            fault = re.search(r"\nno head: ([a-z-]+): ", traced)
            if fault is None:
                self.assertEqual(set(), rules & LATER)
            elif fault[1] == "no-reply":
                self.assertIn(answer["cause"], SILENT)
            elif fault[1] == "head-in-pieces":
                self.assertIn(answer["cause"], LATER)
            else:
                self.assertEqual(answer["cause"], fault[1])
            if answer["status"] == 200:
                self.assertEqual("no usable Content-Length" in traced, bool(rules & NO_LENGTH))
                if not rules & NO_LENGTH:
                    self.assertEqual("are zeros" in traced, "head-alone" in rules)
        return fault[1] if fault else None

    def test_they_agree(self):
        faults = [line.split()[0] for line in run(f"{PROGRAMS}/pavonix-shop", "faults").stdout.splitlines()[1:]]
        seen = {self.compare(name, self.port, f"/fault/{name}/shop/good") for name in faults if name != "slow"}
        seen |= {self.compare(name, OddServer(self, *pieces).port) for name, pieces in REPLIES}
        self.assertEqual(seen, {None, "no-reply", "tls", "not-http"} | LATER - {"head-without-end"})
