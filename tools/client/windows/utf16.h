// Converts between UTF-8 (this program) and UTF-16 (Windows).
#pragma once

#include <string>
#include <string_view>

namespace client {

// Invalid sequences become U+FFFD.
[[nodiscard]] std::wstring Utf16Of(std::string_view utf8);
[[nodiscard]] std::string Utf8Of(std::wstring_view utf16);

} // namespace client
