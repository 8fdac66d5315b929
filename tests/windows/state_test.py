#!/usr/bin/env python3
"""Whole calls of both DLLs of the device, with a system of ARM and of Thumb code, on a
processor whose loads into pc do not change state (version 4T), and on later ones.

    state_test.py FOLDER LOADERS     the build folder of the DLLs, and a folder for the loaders
"""
import itertools
import pathlib
import re
import subprocess
import sys

from device_code_test import Image

SOURCE = pathlib.Path(__file__).parents[2]
sys.path.append(str(SOURCE / "examples/python"))
from verify_token import open_token, read_public_key  # noqa: E402

PROFILE = SOURCE / "tests/data/device.profile"
COMPILE = """arm-none-eabi-gcc -march=armv4t -mthumb-interwork -mfloat-abi=soft -O1 -Wall -Wextra -Werror
    -fno-builtin --specs=rdimon.specs""".split()
RESULTS = ["attach 00000001", "thread attach 00000001", *["download 000000c8"] * 4, "buy 00000000", "buy 00000193",
           "buy 00000193", "code 0000038a", "thread detach 00000001", "detach 00000001"]


def check_calls(output):
    """Checks the results, the written downloads and, with the server's example, the token."""
    text = output.decode("latin-1")
    assert [line for line in text.splitlines() if re.search(r" [0-9a-f]{8}$", line)][1:] == RESULTS, text
    assert text.count("the goods") == 3 and "g" * 2000 in text
    key = read_public_key(re.search(r"Public-Key: (.*)", PROFILE.read_text())[1])
    assert open_token(re.search(r"User-Cert: (\S+)", text)[1], *key)[0] == "2026-11-21 8:0:1.001", text
    return re.sub(r"image \w+", "", text)


def reached(log, output, image):
    """The start addresses of the image's functions that ran."""
    moved = int(re.match(rb"image (\w+)", output)[1], 16) - image.base
    return {int(address, 16) - moved for address in re.findall(r"^IN:.*\n0x(\w+):", log.read_text(), re.M)}


def main():
    build, loaders = map(pathlib.Path, sys.argv[1:])
    outputs, log = set(), loaders / "state.log"
    for state in "arm", "thumb":
        loader = loaders / f"state_loader_{state}"
        subprocess.run([*COMPILE, f"-m{state}", SOURCE / "tests/windows/state_loader.c", "-o", loader], check=True)
        for folder, processor in itertools.product((build, build / "trace"), ("ti925t", "arm926", "pxa255")):
            image, ran = Image(folder), set()
            for lacking in [], ["Crypt"]:
                run = ["qemu-arm", "-0", "loader", "-cpu", processor, "-d", "in_asm", "-D", log, loader, *lacking]
                with PROFILE.open() as profile:
                    output = subprocess.run(run, check=True, stdin=profile, stdout=subprocess.PIPE, cwd=folder).stdout
                outputs.add(check_calls(output))
                ran |= reached(log, output, image)
            unused = {name for name, thunk in image.imports.items() if thunk not in ran}
            functions, count = len(ran & set(image.starts)), len(image.starts)
            print(f"{folder.name}, {state}, {processor}: {functions} of {count} functions, {len(image.imports) - len(unused)}",
                  f"of {len(image.imports)} imports; not {unused}")
            assert functions > 0.75 * count and unused <= {"SetLastError"}
    assert len(outputs) == 2, outputs  # one per source of random numbers, whose bytes pad the token


main()
