// The purchase record, field by field.
#pragma once

#include "driver/scenario.h"

#include <string>

namespace pavonix::e2e {

// The value of every byte of a record before the call.
inline constexpr char kUntouchedByte = '\xA5';

// Describes the fields of a record that differ from the expected ones, as hexadecimal
// bytes; empty if all fields are equal.
std::string RecordDifference(const Record &expected, const std::string &found);

} // namespace pavonix::e2e
