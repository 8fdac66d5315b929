// Paths are UTF-8 in this program, whatever the system makes of plain text.
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
