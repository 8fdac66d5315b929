// All paths in this program are UTF-8, whatever the system's encoding is.
#pragma once

#include <filesystem>
#include <string>

namespace client {

[[nodiscard]] inline std::filesystem::path PathOf(const std::string &utf8)
{
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

[[nodiscard]] inline std::string TextOf(const std::filesystem::path &path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace client
