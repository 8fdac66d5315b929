// Bytes of a stranger, made fit to be shown.
#pragma once

#include <string>
#include <string_view>

namespace diagnostics {

// Printable ASCII as it is, everything else as \r, \n, \t or \xNN, and a backslash
// as two. What is longer than `most` bytes ends in "...".
[[nodiscard]] std::string Printable(std::string_view bytes, std::size_t most = 100);

} // namespace diagnostics
