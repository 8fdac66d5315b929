#include "trampoline/stack_walk.h"

#include "image/function_table.h"
#include "system/open_handles.h"

#include <algorithm>

namespace pavonix::device {

namespace {

constexpr int kDeepest = 100;

std::uint32_t WordAt(std::uint32_t address)
{
    return *reinterpret_cast<const std::uint32_t *>(address);
}

// The constant of an instruction: eight bits, rotated right by twice four more.
std::uint32_t ConstantOf(std::uint32_t code)
{
    const std::uint32_t rotation = code >> 7 & 30, value = code & 0xFF;
    return rotation == 0 ? value : value >> rotation | value << (32 - rotation);
}

void Undo(std::uint32_t code, std::uint32_t top, ImageRegisters &registers)
{
    if (code >> 12 == 0xE24DD) { // sub sp, sp, #constant
        registers.sp() += ConstantOf(code);
        return;
    }
    if (code >> 16 != 0xE92D) { // stmfd sp!, {registers}
        Fatal("a prologue that the system cannot undo");
    }
    std::uint32_t *const saved = registers.words;
    for (unsigned i = 0; i < 16; ++i) {
        if ((code >> i & 1) == 0) {
            continue;
        }
        if (registers.sp() >= top || registers.sp() % 4 != 0) {
            Fatal("the stack cannot be walked");
        }
        saved[i] = WordAt(registers.sp());
        registers.sp() += 4;
    }
}

} // namespace

ImageRegisters WalkStack(ImageRegisters registers, std::uint32_t caller, std::uint32_t top)
{
    for (int depth = 0; registers.pc() != caller; ++depth) {
        const Function *function = FunctionTable::Find(registers.pc());
        if (function == nullptr || depth == kDeepest) {
            Fatal(function == nullptr ? "code outside the table of functions" : "the stack cannot be walked");
        }
        for (std::uint32_t end = std::min(function->prologueEnd, registers.pc()); end > function->start; end -= 4) {
            Undo(WordAt(end - 4), top, registers);
        }
        registers.pc() = registers.lr();
    }
    return registers;
}

} // namespace pavonix::device
