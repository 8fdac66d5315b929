// A plug-in of the emulator: counts the instructions that run inside the DLL's
// image and writes "instructions N" to the emulator's log when the program ends.
#include "emulator/plugin.h"

#include <string>

namespace pavonix::device {

namespace {

std::uint64_t instructions = 0;

void OnBlock(PluginId, qemu_plugin_tb *block)
{
    if (IsInImage(qemu_plugin_tb_vaddr(block))) {
        qemu_plugin_register_vcpu_tb_exec_inline(block, kAddToCounter, &instructions, qemu_plugin_tb_n_insns(block));
    }
}

void OnExit(PluginId, void *)
{
    qemu_plugin_outs(("instructions " + std::to_string(instructions) + "\n").c_str());
}

} // namespace

} // namespace pavonix::device

extern "C" __attribute__((visibility("default"))) int qemu_plugin_install(PluginId id, const void *, int, char **)
{
    qemu_plugin_register_vcpu_tb_trans_cb(id, pavonix::device::OnBlock);
    qemu_plugin_register_atexit_cb(id, pavonix::device::OnExit, nullptr);
    return 0;
}
