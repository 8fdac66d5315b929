// Calls between this program, which is the system, and the image. Each side has its own
// stack and may be in ARM or THUMB state. The run ends when the image changes a register
// that it must preserve, or when its stack cannot be walked from a call of the system.
#pragma once

#include <array>
#include <cstdint>

namespace pavonix::device {

using CallWords = std::array<std::uint32_t, 8>;

// Calls a function of the image with up to eight words of arguments, on the image's
// stack of this thread, and returns its r0.
std::uint32_t CallImage(std::uint32_t function, const CallWords &words);

// An address for the image at which `function` of this program can be called with
// up to eight words of arguments. It runs on this program's stack; registers that a
// function need not keep, and what is below the image's stack pointer, are overwritten.
std::uint32_t MakeVeneer(std::uint32_t function);

} // namespace pavonix::device
