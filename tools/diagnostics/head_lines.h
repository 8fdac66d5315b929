// A reply's head as its author meant it, regardless of what the device reads.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace diagnostics {

struct HeadLine {
    std::string_view whole; // without its line end
    std::string_view name;  // before the colon; empty for the status line
    std::string_view value; // after the colon, trimmed
};

// The lines up to the empty one that ends the head, or all lines if there is none. Lines
// end in CR LF or LF; empty lines at the beginning are skipped. Views into `message`.
[[nodiscard]] std::vector<HeadLine> ReadHeadLines(std::string_view message);

// The first line of that name, in any case; null if there is none.
[[nodiscard]] const HeadLine *FindLine(const std::vector<HeadLine> &lines, std::string_view name);

// The server's software: the values of Server, X-Powered-By and Via; printable.
[[nodiscard]] std::string ServerSoftware(std::string_view reply);

[[nodiscard]] bool EqualsInAnyCase(std::string_view one, std::string_view other);
[[nodiscard]] bool ContainsInAnyCase(std::string_view text, std::string_view part);

} // namespace diagnostics
