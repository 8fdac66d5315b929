// HTML out of texts of all kinds.
#pragma once

#include <string>
#include <string_view>

namespace shop {

// The text as a browser shows it, and nothing else, also within an attribute's quotes.
// Controls, and bytes that are no UTF-8, come as escapes.
[[nodiscard]] std::string Html(const std::string &text);

// Bytes line by line, line ends and other unprintable bytes visible; of many only
// the first.
[[nodiscard]] std::string HtmlOfBytes(std::string_view bytes);

} // namespace shop
