// The one-byte mark that every buffer has and every buffer operation checks, so that a
// destroyed or overwritten buffer is never used unnoticed.
#pragma once

#include <cstdint>

namespace pavonix {

// Ends the process on the spot.
[[noreturn]] inline void EndProcess()
{
    __builtin_trap();
}

template <std::uint8_t kAlive>
class IntegrityMark {
public:
    IntegrityMark() : mark_(kAlive) {}
    ~IntegrityMark() { mark_ = 0; }
    IntegrityMark(const IntegrityMark &) = delete;
    IntegrityMark &operator=(const IntegrityMark &) = delete;

    void Check() const
    {
        if (mark_ != kAlive) {
            EndProcess();
        }
    }

private:
    // volatile: the compiler would otherwise drop the store to a dying object
    volatile std::uint8_t mark_;
};

} // namespace pavonix
