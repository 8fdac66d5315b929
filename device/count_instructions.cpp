// A plug-in of the emulator: counts the instructions that run inside the DLL's
// image and writes "instructions N" to the emulator's log when the program ends.
//
// The runner is linked to the lowest addresses, images are mapped far above them,
// and the kernel's helpers stand at the top: an address tells whose code it is.
#include <cstddef>
#include <cstdint>
#include <string>

namespace {

constexpr std::uint64_t kAboveTheRunner = 0x10000000;
constexpr std::uint64_t kKernelHelpers = 0xFFFF0000;

std::uint64_t instructions = 0;

} // namespace

// The emulator's plug-in interface, version 1, as far as it is used here.
extern "C" {

using PluginId = std::uint64_t;
struct qemu_plugin_tb; // a block of translated code

using BlockCallback = void (*)(PluginId, qemu_plugin_tb *);
using ExitCallback = void (*)(PluginId, void *);

constexpr int kAddToCounter = 0;

void qemu_plugin_register_vcpu_tb_trans_cb(PluginId id, BlockCallback callback);
void qemu_plugin_register_vcpu_tb_exec_inline(qemu_plugin_tb *block, int operation, void *counter, std::uint64_t value);
void qemu_plugin_register_atexit_cb(PluginId id, ExitCallback callback, void *data);
std::size_t qemu_plugin_tb_n_insns(const qemu_plugin_tb *block);
std::uint64_t qemu_plugin_tb_vaddr(const qemu_plugin_tb *block);
void qemu_plugin_outs(const char *text);

__attribute__((visibility("default"))) int qemu_plugin_version = 1;

__attribute__((visibility("default"))) int qemu_plugin_install(PluginId id, const void *, int, char **)
{
    qemu_plugin_register_vcpu_tb_trans_cb(id, [](PluginId, qemu_plugin_tb *block) {
        const std::uint64_t address = qemu_plugin_tb_vaddr(block);
        if (address >= kAboveTheRunner && address < kKernelHelpers) {
            qemu_plugin_register_vcpu_tb_exec_inline(block, kAddToCounter, &instructions,
                                                     qemu_plugin_tb_n_insns(block));
        }
    });
    qemu_plugin_register_atexit_cb(
        id, [](PluginId, void *) { qemu_plugin_outs(("instructions " + std::to_string(instructions) + "\n").c_str()); },
        nullptr);
    return 0;
}

} // extern "C"
