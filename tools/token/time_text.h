// The time text of tokens and of the header "X-Server-Timestamp":
// "year-month-day hour:minute:second.fraction", local time, no leading zeros but
// three digits of fraction, for instance 2010-3-5 9:7:3.042.
//
// A device fills the fraction from its uptime; it can be negative (".-042") and
// says nothing about the time. The shop fills it with its milliseconds.
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace token {

// A wall clock reading. The text names no time zone, so that readings are
// compared as they stand on the two clocks.
using WallTime = std::chrono::local_time<std::chrono::milliseconds>;

[[nodiscard]] WallTime WallTimeNow();

[[nodiscard]] std::string FormatTimeText(WallTime time);

// For lists and logs: with leading zeros, so that texts sort as times do.
[[nodiscard]] std::string FormatSortable(WallTime time);

// Whether it is a day that exists, written like 2026-02-20.
[[nodiscard]] bool IsDate(const std::string &text);

// Returns the time to the second, or nothing when the text is not exactly of the
// form above or names a day or a time that does not exist.
[[nodiscard]] std::optional<WallTime> ParseTimeText(const std::string &text);

} // namespace token
