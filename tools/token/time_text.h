// The time text of tokens and of the header "X-Server-Timestamp":
// "year-month-day hour:minute:second.fraction", local time, without leading zeros except
// in the three digits of the fraction, for example 2010-3-5 9:7:3.042.
//
// A device takes the fraction from its uptime: it can be negative (".-042") and is
// unrelated to the time. The shop writes its milliseconds.
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace token {

// The text has no time zone, so the readings of two clocks are compared as they are.
using WallTime = std::chrono::local_time<std::chrono::milliseconds>;

[[nodiscard]] WallTime WallTimeNow();

[[nodiscard]] std::string FormatTimeText(WallTime time);

// For lists and logs: with leading zeros, so that texts sort like times.
[[nodiscard]] std::string FormatSortable(WallTime time);

// Whether it is an existing day, written like 2026-02-20.
[[nodiscard]] bool IsDate(const std::string &text);

// Returns the time to the second. Empty if the text is not exactly of the form above, or
// the day or time does not exist.
[[nodiscard]] std::optional<WallTime> ParseTimeText(const std::string &text);

} // namespace token
