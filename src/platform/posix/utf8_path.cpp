#include "platform/posix/utf8_path.h"

#include "platform/code_pages.h"

#include <algorithm>
#include <climits>

namespace pavonix::platform {

Utf8Path::Utf8Path(const WideChar *path)
{
    if (path == nullptr || !Encode(path)) {
        length_ = 0;
    }
    bytes_[length_] = 0;
    std::replace(bytes_, bytes_ + length_, '\\', '/');
}

bool Utf8Path::Encode(const WideChar *path)
{
    int units = 0;
    while (path[units] != 0) {
        if (++units == kRoom) {
            return false;
        }
    }
    bool lossy = false;
    length_ = WideToBytes(kUtf8CodePage, path, units, bytes_, kRoom - 1, &lossy);
    return !lossy;
}

} // namespace pavonix::platform
