// The text that the tracing library writes beside the profile.
#pragma once

#include <cstdint>
#include <string>

namespace client {

class TraceFile {
public:
    // Remembers how long the trace of that profile is; an empty profile is none.
    explicit TraceFile(const std::string &profile);

    // Shows on standard error what has come to it since.
    void Show() const;

private:
    std::string path_;
    std::uint64_t before_ = 0;
};

} // namespace client
