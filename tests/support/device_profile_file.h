// The profile of the tests' device: a 1024-bit key, serial SERIAL-1, user id 42.
#pragma once

#include <string>

namespace pavonix {

// The profile's path, with '\' as the separator.
inline std::u16string DeviceProfilePath()
{
    std::u16string path;
    for (const char *c = TEST_DATA_DIR "/device.profile"; *c != 0; ++c) {
        path += *c == '/' ? u'\\' : static_cast<char16_t>(*c);
    }
    return path;
}

} // namespace pavonix
