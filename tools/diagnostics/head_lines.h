// A reply's head as its author meant it, whatever the device makes of it.
#pragma once

#include <string_view>
#include <vector>

namespace diagnostics {

struct HeadLine {
    std::string_view whole; // without its line end
    std::string_view name;  // before the colon; empty for the status line
    std::string_view value; // behind it, without blanks around
};

// The lines before the first empty one, ended by CR LF or by LF alone; of a head
// without end all that there is. Empty lines before the first line are skipped, as
// the library skips them. Views into `message`.
[[nodiscard]] std::vector<HeadLine> ReadHeadLines(std::string_view message);

// The first line of that name, in any case; null when there is none.
[[nodiscard]] const HeadLine *FindLine(const std::vector<HeadLine> &lines, std::string_view name);

[[nodiscard]] bool EqualsInAnyCase(std::string_view one, std::string_view other);

} // namespace diagnostics
