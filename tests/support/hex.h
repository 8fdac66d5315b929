// Bytes as hex digits and back.
#pragma once

#include <string>

namespace pavonix::test {

inline std::string FromHex(const std::string &hex)
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

inline std::string ToHex(const std::string &bytes) // upper case
{
    std::string hex;
    for (const char byte : bytes) {
        hex += "0123456789ABCDEF"[static_cast<unsigned char>(byte) >> 4];
        hex += "0123456789ABCDEF"[byte & 15];
    }
    return hex;
}

} // namespace pavonix::test
