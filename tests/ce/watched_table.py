"""Runs the scenarios with the plug-in that watches the image, and prints the depth of its
stack.

    watched_table.py EMULATOR-OPTIONS EMULATOR RUNNER E2E_TESTS OPTION...
"""

import pathlib
import re
import subprocess
import sys
import tempfile

PAGE = 4096
DEEPEST = 8 * 1024  # of the 56 KB that a thread has


def main():
    options, emulator, runner, *tests = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        log = pathlib.Path(folder) / "log"
        caller = f"--caller={emulator} {options} -d plugin -D {log} {runner}"
        result = subprocess.run([*tests, caller], stdout=subprocess.PIPE, text=True)
        if result.returncode != 0:  # an unaligned access ends the runner
            sys.exit(result.stdout)
        text = log.read_text()
    print("aligned", text)
    accesses, stack, step = map(int, re.fullmatch(r"accesses (\d+) stack (\d+) step (\d+)\n", text).groups())
    assert accesses > 10**8, "the plug-in saw too little"
    assert 1024 < stack <= DEEPEST
    assert step <= PAGE, "a page of the stack is jumped over"


main()
