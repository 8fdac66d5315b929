#!/usr/bin/env python3
"""The code of the device's DLL: the table by which its stack is unwound, its
frames, and that it returns in the processor state of its caller. That whole stacks
can be walked, the runner checks at each call of the system.

    device_code_test.py FOLDER     the build folder with PAVONIX.dll and PAVONIX.map

The table is read, and a frame undone, as the system does it; the prologues run in
an emulator, so that there is something to undo.
"""
import pathlib
import re
import struct
import sys
import unittest
from collections import namedtuple

import capstone
import pefile
from capstone.arm import ARM_REG_PC, ARM_REG_SP
from unicorn import UC_ARCH_ARM, UC_MODE_ARM, Uc, arm_const

PAGE = 4096
EXCEPTION_TABLE = 3
STACK, STACK_SIZE, TOP_OF_STACK = 0x70000000, 0x40000, 0x7003FFF0
RETURN = 0x6FFFFFF0
REGISTERS = [getattr(arm_const, "UC_ARM_REG_" + name) for name in
             "R0 R1 R2 R3 R4 R5 R6 R7 R8 R9 R10 R11 R12 SP LR PC".split()]
SP, LR, PC = 13, 14, 15
KEPT = (*range(4, 12), SP)

Function = namedtuple("Function", "start prologue length")


class Image:
    """The DLL as loaded into memory, with facts from its headers and its map."""

    def __init__(self, folder):
        self.pe = pefile.PE(folder / "PAVONIX.dll")
        self.base = self.pe.OPTIONAL_HEADER.ImageBase
        self.memory = bytearray(self.pe.get_memory_mapped_image())
        layout = (folder / "PAVONIX.map").read_text().split("Linker script and memory map")[1]
        # the list of constructors is after the code, or with newer linkers elsewhere
        end = re.search(r"^ +(0x\w+) +(___CTOR_LIST__ = \.|PROVIDE \(etext = \.\))$", layout, re.M)
        self.end, layout = int(end[1], 16), layout[:end.start()]
        thunks = {name: int(address, 16) for address, name in re.findall(r"^ {16}(0x\w+) {16}(\w+)$", layout, re.M)}
        self.imports = {entry.name.decode(): thunks[entry.name.decode()]
                        for library in self.pe.DIRECTORY_ENTRY_IMPORT for entry in library.imports}
        sections = re.findall(r"^ \.text\S*\s+(0x\w+)\s+0x0*[1-9a-f]", layout, re.M)
        symbols = re.findall(r"^ {16}(0x\w+) {16}\S", layout, re.M)
        self.starts = sorted({int(address, 16) for address in sections + symbols})
        self.data = {entry.rva + self.base for block in self.pe.DIRECTORY_ENTRY_BASERELOC for entry in block.entries}
        table = self.pe.OPTIONAL_HEADER.DATA_DIRECTORY[EXCEPTION_TABLE]
        entries = list(struct.iter_unpack("<II", self.bytes(self.base + table.VirtualAddress, table.Size)))
        self.functions = [Function(start, bits & 0xFF, bits >> 8 & 0x3FFFFF) for start, bits in entries]
        self.flags = {bits >> 30 for _, bits in entries}

    def bytes(self, address, size):
        return bytes(self.memory[address - self.base:address - self.base + size])

    def word(self, address):
        return int.from_bytes(self.bytes(address, 4), "little")

    def function_at(self, address):
        return next((f for f in self.functions if f.start <= address < f.start + 4 * f.length), None)

    def unwind(self, registers, read_word):
        """Returns the registers in the caller of the function at registers[PC]."""
        before = dict(registers)
        function = self.function_at(registers[PC])
        assert function, "no function at %x" % registers[PC]
        end = min(function.start + 4 * function.prologue, registers[PC])
        for address in range(end - 4, function.start - 4, -4):
            instruction = self.word(address)
            if instruction >> 16 == 0xE92D:  # stmfd sp!, {...}
                for register in (r for r in range(16) if instruction >> r & 1):
                    before[register] = read_word(before[SP])
                    before[SP] += 4
            elif instruction >> 12 == 0xE24DD:  # sub sp, sp, #...
                before[SP] += turned(instruction)
            else:
                raise AssertionError("not undone: %08x at %x" % (instruction, address))
        before[PC] = before[LR]
        return before

    def frame(self, function):
        nothing = dict.fromkeys(range(16), 0)
        nothing[PC] = function.start + 4 * function.prologue
        return self.unwind(nothing, lambda _: 0)[SP]


def turned(instruction):
    """Returns the constant of an instruction: eight bits, rotated right by twice the next four."""
    turn, value = instruction >> 7 & 30, instruction & 0xFF
    return (value >> turn | value << 32 - turn) & 0xFFFFFFFF


class Machine:
    """Runs code of the image."""

    def __init__(self, image):
        self.uc = Uc(UC_ARCH_ARM, UC_MODE_ARM)
        self.uc.mem_map(image.base, -(-len(image.memory) // PAGE) * PAGE)
        self.uc.mem_write(image.base, bytes(image.memory))
        self.uc.mem_map(STACK, STACK_SIZE)

    def registers(self):
        return {number: self.uc.reg_read(register) for number, register in enumerate(REGISTERS)}

    def word(self, address):
        return int.from_bytes(self.uc.mem_read(address, 4), "little")

    def run(self, start, instructions):
        for number in range(SP):
            self.uc.reg_write(REGISTERS[number], 0x1000 + number)
        self.uc.reg_write(REGISTERS[SP], TOP_OF_STACK)
        self.uc.reg_write(REGISTERS[LR], RETURN)
        before = self.registers()
        self.uc.emu_start(start, RETURN, count=instructions)
        return before


class DeviceCode(unittest.TestCase):
    def setUp(self):
        self.image = Image(pathlib.Path(sys.argv[-1]))

    def test_the_table_names_each_function_once(self):
        functions = self.image.functions
        self.assertEqual(self.image.flags, {1})  # 32-bit instructions, no handler
        for function, following in zip(functions, functions[1:]):
            self.assertEqual(function.start + 4 * function.length, following.start)
        self.assertEqual([function.start for function in functions], self.image.starts)
        self.assertEqual(functions[-1].start + 4 * functions[-1].length, self.image.end)

    def test_frames_fit_a_page(self):
        frames = {function: self.image.frame(function) for function in self.image.functions}
        print("functions:", len(frames), " largest frame:", max(frames.values()))
        self.assertLessEqual(max(frames.values()), PAGE)
        self.assertGreater(max(frames.values()), PAGE // 4)

    def test_instructions_keep_to_the_rules(self):
        """The stack grows in prologues only, and only branches leave a function: bx changes state, a load does not."""
        decoder = capstone.Cs(capstone.CS_ARCH_ARM, capstone.CS_MODE_ARM)
        decoder.detail = True
        for function in self.image.functions:
            end = function.start + 4 * function.length
            code = {address: next(decoder.disasm(self.image.bytes(address, 4), address), None)
                    for address in range(function.start, end, 4)}
            data = {int(m[1], 0) + address + 8 for address, i in code.items() if i
                    for m in [re.search(r"\[pc, #(\w+)\]$", i.op_str)] if m}
            for address, instruction in code.items():
                if address >= min(data, default=end):
                    break  # constants follow the code
                if address in self.image.data:
                    continue  # a jump table
                text = "%x %s %s" % (address, instruction.mnemonic, instruction.op_str)
                _, written = instruction.regs_access()
                if ARM_REG_PC in written:
                    self.assertRegex(text, r" b|pc, \[?pc, ", text)  # or a jump inside the function
                if ARM_REG_SP in written and address >= function.start + 4 * function.prologue:
                    self.assertRegex(instruction.mnemonic, r"^(add|pop|ldm|ldr)", text)

    def test_each_prologue_can_be_undone(self):
        for function in (function for function in self.image.functions if function.prologue):
            machine = Machine(self.image)
            before = machine.run(function.start, function.prologue)
            self.assertEqual(machine.registers()[PC], function.start + 4 * function.prologue)
            after = self.image.unwind(machine.registers(), machine.word)
            self.assertEqual({n: after[n] for n in (*KEPT, PC)}, {n: before[n] for n in KEPT} | {PC: RETURN})


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
