// The stack that a thread of the device runs the image's code on.
#pragma once

#include <cstdint>

namespace pavonix::device {

// 64 KB of which the device keeps 8 for itself: who comes that deep ends the run
// with a word about it. One for each thread that makes calls, made by its first.
class ImageStack {
public:
    ImageStack();
    ~ImageStack();
    ImageStack(const ImageStack &) = delete;
    ImageStack &operator=(const ImageStack &) = delete;

    static ImageStack &OfThisThread();

    // Where a call starts: below it the stack is the image's. Aligned to 4 bytes
    // and never to 8, which is all that the device promises.
    std::uint32_t Top() const;
    // The lowest address that may be used.
    std::uint32_t Bottom() const;

private:
    unsigned char *mapping_;
    unsigned char *signalStack_;
};

// A stack ends at a multiple of its size, so that any address in it tells the end.
// The last word there holds the stack pointer of the system's side (trampoline.h).
constexpr std::uint32_t kStackSize = 0x10000;

} // namespace pavonix::device
