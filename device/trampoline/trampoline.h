// The two ways between the system's side, which is this program, and the image's:
// each side has its own stack, and each may be in ARM or in THUMB state. The run ends
// when the image changes a register that it must keep, or when its stack cannot be
// walked from a call of the system.
#pragma once

#include <array>
#include <cstdint>

namespace pavonix::device {

using CallWords = std::array<std::uint32_t, 8>;

// Calls a function of the image with up to eight words of arguments, on the image's
// stack of this thread, and returns what it left in r0.
std::uint32_t CallImage(std::uint32_t function, const CallWords &words);

// An address for the image at which `function` of this program can be called with
// up to eight words of arguments. It runs on this program's stack; registers that a
// function need not keep, and what is below the image's stack pointer, are overwritten.
std::uint32_t MakeVeneer(std::uint32_t function);

} // namespace pavonix::device
