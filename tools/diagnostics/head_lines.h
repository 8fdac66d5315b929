// A reply's head as its author meant it, whatever the device makes of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace diagnostics {

struct HeadLine {
    std::string_view whole; // without its line end
    std::string_view name;  // before the colon; empty for the status line
    std::string_view value; // after it, without spaces around
};

// The lines before the empty one that ends the head, ended by CR LF or by LF alone;
// of a head without end all lines. Empty lines before the first one are skipped.
// Views into `message`.
[[nodiscard]] std::vector<HeadLine> ReadHeadLines(std::string_view message);

// The first line of that name, in any case; null when there is none.
[[nodiscard]] const HeadLine *FindLine(const std::vector<HeadLine> &lines, std::string_view name);

// How the server names itself and what it runs behind: the values of Server,
// X-Powered-By and Via; printable.
[[nodiscard]] std::string ServerSoftware(std::string_view reply);

[[nodiscard]] bool EqualsInAnyCase(std::string_view one, std::string_view other);
[[nodiscard]] bool ContainsInAnyCase(std::string_view text, std::string_view part);

} // namespace diagnostics
