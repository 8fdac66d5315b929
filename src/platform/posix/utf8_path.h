// Wide paths in this system's form.
#pragma once

#include "platform/wide_char.h"

namespace pavonix::platform {

// The UTF-8 form of a wide path, with '/' for '\'. Not valid() if the path is null,
// empty, not valid UTF-16 or longer than the system's limit.
class Utf8Path {
public:
    explicit Utf8Path(const WideChar *path);

    bool valid() const { return length_ > 0; }
    const char *c_str() const { return bytes_; }
    char *data() { return bytes_; }

private:
    static constexpr int kRoom = 4096; // PATH_MAX
    bool Encode(const WideChar *path);

    char bytes_[kRoom];
    int length_ = 0;
};

} // namespace pavonix::platform
