"""The image's table of functions, by which the system unwinds the stack.

Each function has 8 bytes: its address; then, counted in instructions, 8 bits
for its prologue and 22 for its length, a bit for 32-bit instructions and one for a
handler, which no function has. The system leaves a frame by undoing the prologue: the
instructions at a function's start that move the stack pointer.
"""
import os
import struct
import subprocess

IS_32_BIT = 1 << 30
# mask and value of stmfd sp!, {...} and of sub sp, sp, #...
PROLOGUE = ((0xFFFF0000, 0xE92D0000), (0xFFFFF000, 0xE24DD000))


def functions(tools, image):
    """Address by name of all that is in .text, and where its functions end."""
    listing = subprocess.run([tools + "nm", "--defined-only", image], check=True, stdout=subprocess.PIPE, text=True).stdout
    symbols = (line.split(None, 2) for line in listing.splitlines())
    found = {name: int(address, 16) for address, kind, name in symbols if kind in "tT" and not name.startswith(".")}
    # the list of constructors is in .text, after the code, or with newer linkers in .rdata
    end = min(found[name] for name in ("etext", "__CTOR_LIST__") if name in found)
    return {name: address for name, address in found.items() if address < end}, end


def instructions(tools, image):
    raw = image + ".text"
    subprocess.run([tools + "objcopy", "-O", "binary", "-j", ".text", image, raw], check=True)
    with open(raw, "rb") as file:
        return [word for word, in struct.iter_unpack("<I", file.read(os.path.getsize(raw) & ~3))]


def prologue_length(code):
    length = 0
    while any(code[length] & mask == value for mask, value in PROLOGUE):
        length += 1
    return length


def unwind_table(tools, image, anchor):
    """Assembly lines of the section .pdata for a linked `image`; addresses are written relative to the function `anchor`."""
    names, end = functions(tools, image)
    starts, code = sorted(set(names.values())), instructions(tools, image)
    yield '\t.section .pdata,"dr"\n'
    for start, next_start in zip(starts, starts[1:] + [end]):
        length = (next_start - start) // 4
        prologue = prologue_length(code[(start - starts[0]) // 4:])
        yield "\t.word %s + (%d), 0x%x\n" % (anchor, start - names[anchor], IS_32_BIT | length << 8 | prologue)
