// A plug-in of the emulator: checks that the DLL's image runs on every processor of the
// device, independent of the emulated one. It ends the program at
//
// - an instruction that version 4T of the architecture lacks (the emulator has such a
//   processor, but the runner's own C library needs version 5),
// - a load into pc of a THUMB address, which changes state from version 5 on only,
// - a call of a kernel or an instruction for a coprocessor, which devices lack,
// - an unaligned access: devices fault there, or read something else.
//
// When the program ends, the emulator's log gets "accesses N stack BYTES step BYTES":
// the image's deepest stack, and its largest single step below the deepest place so far.
#include "trampoline/image_stack.h"
#include "emulator/plugin.h"

#include <algorithm>
#include <map>
#include <string>

namespace pavonix::device {

namespace {

struct Instruction {
    std::uint64_t address;
    std::uint32_t code;

    bool NamesStackPointer() const { return (code >> 16 & 15) == 13; }
};

std::uint64_t blocks = 0;                 // that were run
std::uint64_t loadedAt = 0, loadedIn = 0; // the last load into pc, and its block
std::uint64_t accesses = 0, deepest = 0, longestStep = 0;
std::map<std::uint64_t, std::uint64_t> depths; // of each stack, by its end

// For an instruction in ARM state.
bool IsOfVersion5(std::uint32_t code)
{
    const bool unconditional = code >> 28 == 15;               // pld, blx of an address
    const bool doubleWord = (code & 0x0E1000D0) == 0x000000D0; // ldrd, strd
    const bool miscellaneous = (code & 0x0F900000) == 0x01000000 && (code & 0x90) != 0x90;
    const bool statusOrBx = (code & 0x000000F0) == 0 || (code & 0x0FF000F0) == 0x01200010;
    return unconditional || doubleWord || (miscellaneous && !statusOrBx); // the rest: blx, clz, bkpt, qadd, smul
}

const char *ReasonAgainst(std::uint32_t code)
{
    const bool isForCoprocessor = (code & 0x0C000000) == 0x0C000000; // svc is among them
    return IsOfVersion5(code) ? "not in version 4T of the processor"
           : isForCoprocessor ? "a coprocessor or a kernel is called"
                              : nullptr;
}

bool LoadsPc(std::uint32_t code)
{
    return (code & 0x0C10F000) == 0x0410F000 || (code & 0x0E108000) == 0x08108000; // ldr, ldm
}

void OnForbidden(unsigned, void *data)
{
    const auto *instruction = static_cast<const Instruction *>(data);
    Forbid(ReasonAgainst(instruction->code), instruction->address);
}

void OnLoadIntoPc(unsigned, void *data)
{
    loadedAt = static_cast<const Instruction *>(data)->address;
    loadedIn = blocks;
}

// The emulator calls this before it counts the block.
void OnThumbBlock(unsigned, void *)
{
    if (loadedAt != 0 && blocks == loadedIn) {
        Forbid("a load into pc that must change to THUMB state", loadedAt);
    }
}

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
    OnStack(address, instruction->NamesStackPointer());
}

void OnArmInstruction(qemu_plugin_insn *watched)
{
    // never freed: the emulator may run the block at any time
    const std::uint32_t code = *static_cast<const std::uint32_t *>(qemu_plugin_insn_data(watched));
    auto *instruction = new Instruction{qemu_plugin_insn_vaddr(watched), code};
    if (ReasonAgainst(code) != nullptr) {
        qemu_plugin_register_vcpu_insn_exec_cb(watched, OnForbidden, kNoRegisters, instruction);
    }
    if (LoadsPc(code)) {
        qemu_plugin_register_vcpu_insn_exec_cb(watched, OnLoadIntoPc, kNoRegisters, instruction);
    }
    qemu_plugin_register_vcpu_mem_cb(watched, OnAccess, kNoRegisters, kReadsAndWrites, instruction);
}

void OnBlock(PluginId, qemu_plugin_tb *block)
{
    const bool isThumb = qemu_plugin_insn_size(qemu_plugin_tb_get_insn(block, 0)) == 2;
    qemu_plugin_register_vcpu_tb_exec_inline(block, kAddToCounter, &blocks, 1);
    if (isThumb) {
        qemu_plugin_register_vcpu_tb_exec_cb(block, OnThumbBlock, kNoRegisters, nullptr);
    } else if (IsInImage(qemu_plugin_tb_vaddr(block))) {
        for (std::size_t i = 0; i < qemu_plugin_tb_n_insns(block); ++i) {
            OnArmInstruction(qemu_plugin_tb_get_insn(block, i));
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
