// Texts of goods, devices and strangers, on their way to a database or a screen.
#pragma once

#include <string>

namespace shop {

// Whether it is UTF-8 without control characters other than tabs and line ends.
[[nodiscard]] bool IsPlainText(const std::string &text);

// The text for one line of a terminal: as it is, unless it could do more there
// than be read; then in ASCII with escapes.
[[nodiscard]] std::string ForTerminal(const std::string &text);

} // namespace shop
