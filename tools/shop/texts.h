// Texts of goods, devices and strangers, on their way to a database or a screen.
#pragma once

#include <string>
#include <string_view>

namespace shop {

// Whether it is UTF-8 without control characters other than tabs and line ends.
[[nodiscard]] bool IsPlainText(const std::string &text);

// The text for one line of a terminal: unchanged unless it contains control characters or is not UTF-8; then in ASCII
// with escapes.
[[nodiscard]] std::string ForTerminal(const std::string &text);

// Appends the text for XML, also within an attribute's double quotes.
void AppendEscaped(std::string *document, std::string_view text);

// The text for HTML, also within an attribute's quotes. Control characters and bytes that are not UTF-8 become visible
// escapes.
[[nodiscard]] std::string Html(const std::string &text);

} // namespace shop
