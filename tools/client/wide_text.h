// Converts between UTF-8 (command line, output) and UTF-16 (library).
#pragma once

#include <pavonix/pavonix.h>

#include <optional>
#include <string>
#include <string_view>

namespace client {

using WideText = std::basic_string<PavonixChar>;

// Throws Failure(kUsage) for a text that is not UTF-8.
[[nodiscard]] WideText ToWide(std::string_view utf8);

// Ends before a lone surrogate, which the library's code page cannot produce.
[[nodiscard]] std::string ToUtf8(std::basic_string_view<PavonixChar> wide);

// Returns the path as the library expects it: absolute, so that its folder is part
// of it, and with '\' for '/'. Throws Failure(kUsage), also for '*' and '?', which
// the library would take for a search pattern.
[[nodiscard]] WideText ToWidePath(const std::string &path);

// The bytes that a UTF-8 path has in code page 1252, the library's own; nothing
// when it has letters that the page lacks.
[[nodiscard]] std::optional<std::size_t> NarrowLength(const std::string &path);

} // namespace client
