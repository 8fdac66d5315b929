// Lines of a byte stream.
#pragma once

#include "platform/files.h"

#include <cstdint>

namespace pavonix {

// Reads lines ended by a line feed, which is not stored and may be missing after the
// last line. Its buffers are wiped at the end: a line may have been a private key.
class LineReader {
public:
    explicit LineReader(platform::Stream *stream) : stream_(stream) {}
    ~LineReader();
    LineReader(const LineReader &) = delete;
    LineReader &operator=(const LineReader &) = delete;

    // The next line, NUL-terminated and valid until the next call. Null at the end of
    // the stream and at a line of 1024 characters or more.
    const char *ReadLine();

private:
    bool Fill(); // the next piece; false at the end

    platform::Stream *stream_;
    char line_[1024]; // terminator included
    char piece_[1024];
    const char *next_ = piece_; // the unread rest of the piece
    const char *end_ = piece_;
};

} // namespace pavonix
