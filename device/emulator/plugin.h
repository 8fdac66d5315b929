// The emulator's plug-in interface, version 1, as far as it is used here. The
// emulator's qemu-plugin.h describes its functions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>

extern "C" {

using PluginId = std::uint64_t;
struct qemu_plugin_tb; // a block of translated code
struct qemu_plugin_insn;

using BlockCallback = void (*)(PluginId, qemu_plugin_tb *);
using ExitCallback = void (*)(PluginId, void *);
using ExecutionCallback = void (*)(unsigned processor, void *data);
using MemoryCallback = void (*)(unsigned processor, std::uint32_t info, std::uint64_t address, void *data);

constexpr int kNoRegisters = 0;
constexpr int kAddToCounter = 0;
constexpr int kReadsAndWrites = 3;

void qemu_plugin_register_vcpu_tb_trans_cb(PluginId id, BlockCallback callback);
void qemu_plugin_register_vcpu_tb_exec_cb(qemu_plugin_tb *block, ExecutionCallback callback, int registers, void *data);
void qemu_plugin_register_vcpu_tb_exec_inline(qemu_plugin_tb *block, int operation, void *counter, std::uint64_t value);
void qemu_plugin_register_vcpu_insn_exec_cb(qemu_plugin_insn *instruction, ExecutionCallback callback, int registers,
                                            void *data);
void qemu_plugin_register_vcpu_mem_cb(qemu_plugin_insn *instruction, MemoryCallback callback, int registers, int which,
                                      void *data);
void qemu_plugin_register_atexit_cb(PluginId id, ExitCallback callback, void *data);
std::size_t qemu_plugin_tb_n_insns(const qemu_plugin_tb *block);
std::uint64_t qemu_plugin_tb_vaddr(const qemu_plugin_tb *block);
qemu_plugin_insn *qemu_plugin_tb_get_insn(const qemu_plugin_tb *block, std::size_t index);
const void *qemu_plugin_insn_data(const qemu_plugin_insn *instruction);
std::size_t qemu_plugin_insn_size(const qemu_plugin_insn *instruction);
std::uint64_t qemu_plugin_insn_vaddr(const qemu_plugin_insn *instruction);
unsigned qemu_plugin_mem_size_shift(std::uint32_t info);
void qemu_plugin_outs(const char *text);

__attribute__((visibility("default"), used)) inline int qemu_plugin_version = 1;

} // extern "C"

namespace pavonix::device {

// True for an address in the DLL's image. The runner is linked to the lowest
// addresses, images are mapped far above them, and the kernel's helpers are at
// the top.
inline bool IsInImage(std::uint64_t address)
{
    return address >= 0x10000000 && address < 0xFFFF0000;
}

// Ends the program: the image used something that the device's processor lacks.
[[noreturn]] inline void Forbid(const char *what, std::uint64_t instruction)
{
    std::cerr << "misuse: " << what << ", by the instruction at 0x" << std::hex << instruction << std::endl;
    std::_Exit(70);
}

} // namespace pavonix::device
