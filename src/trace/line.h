// The trace of a call: lines of ASCII text in a file beside the profile.
#pragma once

#include "platform/files.h"
#include "platform/wide_char.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace pavonix::trace {

// Sets the file for the following lines: the profile's path with ".trace.txt" after
// it. A file of more than 1 MB is started again. Nothing is written without a path or
// if it is too long.
void ChooseFile(const WideChar *profilePath);

// One line. It is in the file when the object is gone, so that a call that hangs or
// crashes leaves the lines before that. Write errors are ignored: tracing must not
// affect the call.
class Line {
public:
    explicit Line(const char *start);
    ~Line();
    Line(const Line &) = delete;
    Line &operator=(const Line &) = delete;

    Line &Text(const char *text);
    Line &Number(std::int64_t number); // of at least -2^31, and below 10^18
    // Printable ASCII as it is, all else as \r, \n, \xNN, in wide texts \uNNNN; a
    // line feed also begins an indented line.
    Line &Bytes(std::string_view bytes);
    Line &Wide(const WideChar *text, int longest); // null is "(null)"

private:
    void Write(const char *bytes, std::size_t count);
    void Escape(char kind, unsigned value, int digits);

    platform::Stream *stream_;
};

} // namespace pavonix::trace
