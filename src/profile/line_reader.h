// Lines of a byte stream.
#pragma once

#include "platform/files.h"

#include <cstdint>

namespace pavonix {

// Reads lines ended by a line feed, which is not stored; a last line needs none.
class LineReader {
public:
    static constexpr int kLineRoom = 1024; // terminator included

    explicit LineReader(platform::Stream *stream) : stream_(stream) {}

    // Reads the next line into `line`, NUL-terminated. False at the end of the
    // stream, and for good at a line that does not fit.
    bool ReadLine(char (&line)[kLineRoom]);

private:
    int ReadByte(); // -1 at the end

    platform::Stream *stream_;
    char piece_[1024];
    std::uint32_t used_ = 0;
    std::uint32_t filled_ = 0;
    bool failed_ = false;
};

} // namespace pavonix
