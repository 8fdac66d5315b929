// Makes bytes from the network or a file safe to show on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace diagnostics {

// Keeps printable ASCII and escapes everything else as \r, \n, \t, \\ or \xNN. After `most`
// bytes "..." follows.
[[nodiscard]] std::string Printable(std::string_view bytes, std::size_t most = 100);

// The same for UTF-8, whose letters are kept. Control characters, invisible ones, those
// that change the line or writing direction, and invalid bytes are escaped.
[[nodiscard]] std::string PrintableText(std::string_view utf8);

} // namespace diagnostics
