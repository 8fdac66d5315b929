// UTF-8 inside this program, UTF-16 for the system.
#pragma once

#include <string>
#include <string_view>

namespace client {

// What is no valid text becomes U+FFFD.
[[nodiscard]] std::wstring Utf16Of(std::string_view utf8);
[[nodiscard]] std::string Utf8Of(std::wstring_view utf16);

} // namespace client
