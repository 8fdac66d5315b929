// What the device makes of a reply.
#pragma once

#include "diagnostics/exchange.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace diagnostics {

// The device reads once, up to kFirstReception bytes, and takes what did not come
// as zeros; it looks for names as they are spelled, anywhere, and takes the first.
class DeviceReading {
public:
    explicit DeviceReading(const Exchange &exchange);

    // What the call answers: the status, 0 for none.
    int status() const { return status_; }
    bool headIsWhole() const { return headIsWhole_; }
    // Head and blank line; 2, as the device has it, when the head is not whole.
    std::size_t headLength() const { return headLength_; }
    // What it takes for the body's length; 0 for none.
    std::uint32_t announced() const { return announced_; }
    // Body bytes that it stores as zeros because they did not come at once.
    std::size_t zeros() const;

    // The value that a purchase's verdict has for a name.
    [[nodiscard]] std::optional<std::string> Verdict(std::string_view name) const;
    // Where the device finds a name: the whole line of the head or the body.
    [[nodiscard]] std::optional<std::string> LineOf(std::string_view name) const;

private:
    std::string_view Head() const { return std::string_view(area_).substr(0, headLength_); }

    std::string area_; // kFirstReception bytes
    std::size_t came_; // of them
    bool headIsWhole_ = false;
    std::size_t headLength_ = 0;
    std::uint32_t announced_ = 0;
    int status_ = 0;
};

// A decimal number as the device reads it: blanks before it are skipped, what
// follows it is ignored, no digits are 0, and it stops at the limits of 32 bits.
[[nodiscard]] std::int32_t DeviceNumber(std::string_view text);

} // namespace diagnostics
