// HTML out of texts of all kinds.
#pragma once

#include <string>

namespace shop {

// The text as a browser shows it, and nothing else, also within an attribute's quotes.
// Controls, and bytes that are no UTF-8, come as escapes.
[[nodiscard]] std::string Html(const std::string &text);

} // namespace shop
