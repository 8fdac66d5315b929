// The stack on which a thread of the device runs the image's code.
#pragma once

#include <cstdint>

namespace pavonix::device {

// 64 KB, of which the device reserves 8: reaching those ends the run with a message. Each
// thread that makes calls has one, made by its first call.
class ImageStack {
public:
    ImageStack();
    ~ImageStack();
    ImageStack(const ImageStack &) = delete;
    ImageStack &operator=(const ImageStack &) = delete;

    static ImageStack &OfThisThread();

    // The stack pointer at a call: the stack below it is the image's. Aligned to 4 bytes
    // and never to 8, because the device promises no more.
    std::uint32_t Top() const;
    // The lowest address that may be used.
    std::uint32_t Bottom() const;

private:
    unsigned char *mapping_;
    unsigned char *signalStack_;
};

// A stack ends at a multiple of its size, so that its end follows from any address in it.
// The last word there holds the stack pointer of the system's side (trampoline.h).
constexpr std::uint32_t kStackSize = 0x10000;

} // namespace pavonix::device
