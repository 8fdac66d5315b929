// A plug-in of the emulator: holds the DLL's image to version 4T of the processor.
// The emulator has such a processor, but the runner's own C library needs version
// 5. An instruction of version 5 in the image ends the program, and so does a load
// into pc of a THUMB address: that changes state from version 5 on only.
#include "emulator/plugin.h"

namespace pavonix::device {

namespace {

std::uint64_t blocks = 0;                 // that were run
std::uint64_t loadedAt = 0, loadedIn = 0; // the last load into pc, and its block

// For an instruction in ARM state.
bool IsOfVersion5(std::uint32_t code)
{
    const bool unconditional = code >> 28 == 15;               // pld, blx of an address
    const bool doubleWord = (code & 0x0E1000D0) == 0x000000D0; // ldrd, strd
    const bool miscellaneous = (code & 0x0F900000) == 0x01000000 && (code & 0x90) != 0x90;
    const bool statusOrBx = (code & 0x000000F0) == 0 || (code & 0x0FF000F0) == 0x01200010;
    return unconditional || doubleWord || (miscellaneous && !statusOrBx); // the rest: blx, clz, bkpt, qadd, smul
}

bool LoadsPc(std::uint32_t code)
{
    return (code & 0x0C10F000) == 0x0410F000 || (code & 0x0E108000) == 0x08108000; // ldr, ldm
}

void OnLoadIntoPc(unsigned, void *address)
{
    loadedAt = reinterpret_cast<std::uintptr_t>(address);
    loadedIn = blocks;
}

// The emulator calls this before it counts the block.
void OnThumbBlock(unsigned, void *)
{
    if (loadedAt != 0 && blocks == loadedIn) {
        Forbid("a load into pc that must change to THUMB state", loadedAt);
    }
}

void OnArmInstruction(qemu_plugin_insn *instruction)
{
    const auto code = *static_cast<const std::uint32_t *>(qemu_plugin_insn_data(instruction));
    const std::uint64_t address = qemu_plugin_insn_vaddr(instruction);
    if (LoadsPc(code)) {
        qemu_plugin_register_vcpu_insn_exec_cb(instruction, OnLoadIntoPc, kNoRegisters,
                                               reinterpret_cast<void *>(address));
    }
    if (IsOfVersion5(code)) {
        const auto forbid = [](unsigned, void *place) {
            Forbid("not in version 4T of the processor", reinterpret_cast<std::uintptr_t>(place));
        };
        qemu_plugin_register_vcpu_insn_exec_cb(instruction, forbid, kNoRegisters, reinterpret_cast<void *>(address));
    }
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

} // namespace

} // namespace pavonix::device

extern "C" __attribute__((visibility("default"))) int qemu_plugin_install(PluginId id, const void *, int, char **)
{
    qemu_plugin_register_vcpu_tb_trans_cb(id, pavonix::device::OnBlock);
    return 0;
}
