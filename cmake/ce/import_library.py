#!/usr/bin/python3
"""Makes an import library for a system DLL from its .def file.

    import_library.py TOOLS DEF LIBRARY

TOOLS is the path prefix of the binutils. The thunks that dlltool has for this
target load the function's address into pc, and before ARMv5T that stays in ARM
state: a device whose system is THUMB code would crash at the first call. So
dlltool makes the address slots alone, and the thunks are these.
"""
import pathlib
import subprocess
import sys
import tempfile

THUNK = """\t.text
\t.globl {name}
{name}:
\tldr ip, 1f
\tldr ip, [ip]
\tbx ip
1:\t.word __imp_{name}
"""


def names(definition):
    lines = (line.partition(";")[0].strip() for line in definition.splitlines())
    return [line for line in lines if line and line != "EXPORTS" and not line.startswith("LIBRARY")]


def slots_only(definition):
    """The same file with each name marked as data, for which dlltool makes no code."""
    exported = set(names(definition))
    return "".join(line + (" DATA" if line in exported else "") + "\n" for line in definition.splitlines())


def main():
    tools, definition, library = sys.argv[1], pathlib.Path(sys.argv[2]).read_text(), pathlib.Path(sys.argv[3])
    library.unlink(missing_ok=True)
    with tempfile.TemporaryDirectory() as folder:

        def run(tool, *arguments):
            subprocess.run([tools + tool, *arguments], check=True, cwd=folder)

        (pathlib.Path(folder) / "slots.def").write_text(slots_only(definition))
        run("dlltool", "--deterministic-libraries", "--input-def", "slots.def", "--output-lib", library.name)
        for name in names(definition):  # one object each: the linker takes only what is called
            (pathlib.Path(folder) / "thunk.s").write_text(THUNK.format(name=name))
            run("as", "-march=armv4t", "-mfloat-abi=soft", "-o", name + ".o", "thunk.s")
        run("ar", "qsD", library.name, *(name + ".o" for name in names(definition)))
        library.write_bytes((pathlib.Path(folder) / library.name).read_bytes())


main()
