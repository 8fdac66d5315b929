// The trace that the library writes beside the profile.
#pragma once

#include <cstdint>
#include <string>

namespace client {

class TraceFile {
public:
    // Remembers the current length of the profile's trace. An empty path disables it.
    explicit TraceFile(const std::string &profile);

    // Prints what was appended since, on standard error.
    void Show() const;

private:
    std::string path_;
    std::uint64_t before_ = 0;
};

} // namespace client
