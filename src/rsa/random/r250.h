// The R250 shift-register generator (Kirkpatrick and Stoll): each new 32-bit word
// is the exclusive or of the one 250 places back and the one 103 places after that.
#pragma once

#include "rsa/text/data_buffer.h"

#include <cstdint>

namespace pavonix {

// Seeds itself once, at the first request. It has no lock of its own.
class R250 {
public:
    constexpr R250() = default; // all zero, so that the process-wide one costs no room in the file

    bool seeded() const { return seeded_; }
    // Fills the state from the system's cryptographic provider, or from the C
    // library's rand, seeded with the tick count, if the provider fails.
    void Seed();

    // Append exactly `count` bytes; those of AppendNonZeroBytes are never 0. False when
    // memory runs out: the output is then empty.
    [[nodiscard]] bool AppendBytes(std::uint32_t count, DataBuffer *output);
    [[nodiscard]] bool AppendNonZeroBytes(std::uint32_t count, DataBuffer *output);

private:
    static constexpr unsigned kWords = 250;
    static constexpr unsigned kLag = 103;

    bool FillFromProvider();
    void FillFromRand();
    void MakeIndependent();
    std::uint32_t Step();
    bool AppendWords(std::uint32_t count, bool allowZero, DataBuffer *output);

    std::uint32_t words_[kWords] = {};
    std::uint8_t j_ = 0;
    std::uint8_t k_ = 0;
    bool seeded_ = false;
};

// The one generator of the process. It has no lock: callers hold the component's.
R250 &SharedR250();

// Constructing one seeds the process-wide generator if that has not happened yet. Not
// used by the three calls: the generator seeds itself.
class ZentorpRand {
public:
    ZentorpRand();
    virtual ~ZentorpRand() = default;
};

} // namespace pavonix
