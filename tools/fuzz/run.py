#!/usr/bin/env python3
"""run.py MINUTES: runs every fuzzer of build/fuzz for its share of the time.

build/fuzz-corpus/NAME keeps their inputs for the next run. An input that fails is
minimised and kept in build/fuzz-corpus/findings; the exit code is then 1.
"""

import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
CORPUS = ROOT / "build/fuzz-corpus"
FINDINGS = CORPUS / "findings"
LONGEST = {"call": 600, "diagnosis": 1400, "key": 1200}  # bytes of an input; 400 for the others
SECONDS_TO_SHRINK = 20


def shrink(program, finding):
    """The smallest input that was found to break the program in the same way."""
    small = finding.with_suffix(".small")
    subprocess.run([program, "-minimize_crash=1", f"-max_total_time={SECONDS_TO_SHRINK}",
                    f"-exact_artifact_path={small}", finding], capture_output=True)
    return small if small.exists() else finding


def run(program, seconds):
    name = program.name.removeprefix("fuzz_")
    corpus = CORPUS / name
    corpus.mkdir(parents=True, exist_ok=True)
    before = set(FINDINGS.iterdir())
    command = [program, corpus, ROOT / "fuzz/seeds" / name, f"-max_total_time={seconds}", "-print_final_stats=1",
               f"-max_len={LONGEST.get(name, 400)}", "-len_control=10", "-timeout=10", "-rss_limit_mb=2048",
               f"-artifact_prefix={FINDINGS}/{name}-"]
    result = subprocess.run(command, capture_output=True, text=True, errors="replace")
    (CORPUS / f"{name}.log").write_text(result.stderr)
    numbers = re.findall(r"cov: (\d+) ft: (\d+) corp: (\d+)", result.stderr) or [("?", "?", "?")]
    runs = re.findall(r"number_of_executed_units: (\d+)", result.stderr) or ["?"]
    findings = [shrink(program, path) for path in sorted(set(FINDINGS.iterdir()) - before)
                if path.name.startswith(name + "-")]
    if result.returncode != 0 and not findings:
        findings = [CORPUS / f"{name}.log"]
    return [name, str(seconds), runs[-1], *numbers[-1], findings]


def main():
    programs = sorted(path for path in (ROOT / "build/fuzz/fuzz").glob("fuzz_*") if os.access(path, os.X_OK))
    FINDINGS.mkdir(parents=True, exist_ok=True)
    workers = os.cpu_count() or 1
    seconds = max(1, int(float(sys.argv[1]) * 60 * workers / len(programs)))
    with ThreadPoolExecutor(workers) as pool:
        rows = list(pool.map(lambda program: run(program, seconds), programs))
    line = "{:<11}{:>9}{:>14}{:>9}{:>11}{:>9}{:>11}"
    print(line.format("fuzzer", "seconds", "executions", "edges", "features", "corpus", "findings"))
    for *numbers, findings in rows:
        print(line.format(*numbers, len(findings)))
    found = [str(path.relative_to(ROOT)) for row in rows for path in row[-1]]
    print(*found, sep="\n", end="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
