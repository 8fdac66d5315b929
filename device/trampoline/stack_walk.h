// Walks the image's stack as the system does for an exception: leaves one function after
// the other by undoing its prologue.
#pragma once

#include <cstdint>

namespace pavonix::device {

struct ImageRegisters {
    std::uint32_t words[16];

    std::uint32_t &sp() { return words[13]; }
    std::uint32_t &lr() { return words[14]; }
    std::uint32_t &pc() { return words[15]; }
};

// The registers of the caller of the image, which is at `caller`. Ends the run when a
// function has no entry in its image's table, or a prologue cannot be undone.
ImageRegisters WalkStack(ImageRegisters registers, std::uint32_t caller, std::uint32_t top);

} // namespace pavonix::device
