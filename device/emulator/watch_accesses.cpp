// A plug-in of the emulator: watches what the DLL's image reads and writes. An
// address that is no multiple of the access's size ends the program, because the
// device's processors fault there, or read something else. When the program ends,
// the emulator's log gets "accesses N stack BYTES step BYTES": how deep the image's
// own stack became, and how far below its deepest place so far it ever reached.
#include "trampoline/image_stack.h"
#include "emulator/plugin.h"

#include <algorithm>
#include <map>
#include <string>

namespace pavonix::device {

namespace {

struct Instruction {
    std::uint64_t address;
    bool namesStackPointer;
};

std::uint64_t accesses = 0, deepest = 0, longestStep = 0;
std::map<std::uint64_t, std::uint64_t> depths; // of each stack, by its end

void OnStack(std::uint64_t address, bool isStack)
{
    const std::uint64_t end = (address | (kStackSize - 1)) + 1;
    auto stack = depths.find(end);
    if (stack == depths.end()) {
        if (!isStack) {
            return;
        }
        stack = depths.emplace(end, 0).first;
    }
    const std::uint64_t depth = end - address;
    if (depth > stack->second) {
        longestStep = std::max(longestStep, depth - stack->second);
        deepest = std::max(deepest, depth);
        stack->second = depth;
    }
}

void OnAccess(unsigned, std::uint32_t info, std::uint64_t address, void *data)
{
    const auto *instruction = static_cast<const Instruction *>(data);
    ++accesses;
    const std::uint64_t size = std::uint64_t{1} << std::min(qemu_plugin_mem_size_shift(info), 2u);
    if (address % size != 0) {
        Forbid("an unaligned access", instruction->address);
    }
    OnStack(address, instruction->namesStackPointer);
}

void OnBlock(PluginId, qemu_plugin_tb *block)
{
    for (std::size_t i = 0; i < qemu_plugin_tb_n_insns(block); ++i) {
        qemu_plugin_insn *instruction = qemu_plugin_tb_get_insn(block, i);
        const std::uint64_t address = qemu_plugin_insn_vaddr(instruction);
        if (IsInImage(address)) {
            const auto code = *static_cast<const std::uint32_t *>(qemu_plugin_insn_data(instruction));
            const bool namesStackPointer = (code >> 16 & 15) == 13;
            // kept for good: the emulator may run the block at any time
            qemu_plugin_register_vcpu_mem_cb(instruction, OnAccess, kNoRegisters, kReadsAndWrites,
                                             new Instruction{address, namesStackPointer});
        }
    }
}

void OnExit(PluginId, void *)
{
    const std::string text = "accesses " + std::to_string(accesses) + " stack " + std::to_string(deepest) + " step " +
                             std::to_string(longestStep) + "\n";
    qemu_plugin_outs(text.c_str());
}

} // namespace

} // namespace pavonix::device

extern "C" __attribute__((visibility("default"))) int qemu_plugin_install(PluginId id, const void *, int, char **)
{
    qemu_plugin_register_vcpu_tb_trans_cb(id, pavonix::device::OnBlock);
    qemu_plugin_register_atexit_cb(id, pavonix::device::OnExit, nullptr);
    return 0;
}
