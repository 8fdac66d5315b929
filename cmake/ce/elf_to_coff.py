"""Rewrites the compiler's ELF assembly for an assembler that makes COFF objects.

Instructions are the same in both; only directives differ. Sections become
`.text$name`, `.rdata$name` and so on, which the linker gathers under the part
before the `$`; a group of duplicates that ELF merges by name becomes `.linkonce`.
"""

DROPPED = {".eabi_attribute", ".size", ".type", ".ident", ".file", ".hidden", ".fnstart", ".fnend", ".cantunwind"}

# ELF section: COFF section, COFF flags (x code, d data, r read-only, w writable, b zeroes)
SECTIONS = {
    ".text": (".text", "x"),
    ".rodata": (".rdata", "dr"),
    ".data.rel.ro": (".rdata", "dr"),
    ".data": (".data", "dw"),
    ".bss": (".bss", "b"),
    ".init_array": (".ctors", "dr"),
    ".fini_array": (".dtors", "dr"),
}

# The system undoes a prologue of stores that are made with stmfd.
PUSH_OF_ONE = "[sp, #-4]!"


def coff_section(name, mergeable):
    """The COFF name and flags for an ELF section name."""
    for elf, (coff, flags) in SECTIONS.items():
        if name != elf and not name.startswith(elf + "."):
            continue
        suffix = name[len(elf) + 1:]
        if coff in (".ctors", ".dtors"):
            # these lists are walked the other way round: the linker sorts by
            # the suffix, so a priority counts from the top
            return coff + (".%05d" % (65535 - int(suffix)) if suffix else ""), flags
        if coff == ".bss":
            # the linker gathers plain .bss only, and only a section of its own can merge
            return (".data$" + suffix, "dw") if mergeable else (".bss", "b")
        return coff + ("$" + suffix if suffix else ""), flags
    raise ValueError("no COFF counterpart for section " + name)


def convert(lines):
    """Yields the COFF lines for an iterable of ELF assembly lines."""
    left_out = False
    for line in lines:
        directive, rest = (line.split(None, 1) + ["", ""])[:2]
        rest = rest.rstrip()
        if directive == ".section":
            name, mergeable = rest.split(",")[0], rest.endswith(",comdat")
            left_out = name.startswith(".note")
            if not left_out:
                yield '\t.section %s,"%s"\n' % coff_section(name, mergeable)
                yield "\t.linkonce discard\n" if mergeable else ""
        elif directive in (".text", ".data", ".bss"):
            left_out = False
            yield line
        elif left_out or directive in DROPPED:
            continue
        elif directive == ".weak":
            yield "\t.globl\t%s\n" % rest
        elif directive == ".inst":
            yield "\t.word\t%s\n" % rest
        elif directive == ".word":
            yield line.replace("(target1)", "")
        elif directive == "str" and rest.endswith(PUSH_OF_ONE):
            yield "\tstmfd\tsp!, {%s}\n" % rest.partition(",")[0]
        else:
            yield line
