// Writes a reply's body to a file.
#pragma once

#include "platform/files.h"
#include "platform/wide_char.h"

#include <cstdint>

namespace pavonix {

class BodySource;

// An output file in append mode. After a failed open or write (a full disk, say) it is
// no longer usable: further writes do nothing, but the body is still read to its end.
class BodyWriter {
public:
    BodyWriter() = default;
    ~BodyWriter() { Close(); }
    BodyWriter(const BodyWriter &) = delete;
    BodyWriter &operator=(const BodyWriter &) = delete;

    // Opens the file at a path of less than 260 bytes in the ANSI code page. A path
    // that this code page cannot express is not opened, because a device could not open
    // it either.
    void Open(const WideChar *path);
    void Write(const char *bytes, std::uint32_t count);
    void Close();
    bool usable() const { return stream_ != nullptr && !failed_; }

    // Writes the whole body: the bytes received with the reply's head, then further
    // receptions of at most 1024 bytes, until the announced length is written or the
    // stream ends. Without an announced length only the first bytes are written. A
    // reception is written whole, so a server that sends more than it announced may add
    // up to 1023 bytes.
    void WriteBody(BodySource *body);

private:
    platform::Stream *stream_ = nullptr;
    bool failed_ = false;
};

} // namespace pavonix
