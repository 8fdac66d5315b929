// Bytes from the network or a file, made safe to show on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace diagnostics {

// Printable ASCII as it is, everything else as \r, \n, \t or \xNN, and a backslash
// as two. What is longer than `most` bytes ends in "...".
[[nodiscard]] std::string Printable(std::string_view bytes, std::size_t most = 100);

// The same for UTF-8: its letters stay. Controls of both sets, characters that are
// invisible or change lines or the direction of writing, and bytes that are not
// UTF-8 are escaped.
[[nodiscard]] std::string PrintableText(std::string_view utf8);

} // namespace diagnostics
