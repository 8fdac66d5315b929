// The purchase record, field by field.
#pragma once

#include "driver/scenario.h"

#include <string>

namespace pavonix::e2e {

// What every byte of a record holds before the call.
inline constexpr char kUntouchedByte = '\xA5';

// The fields of a record that differ from the expected ones, as bytes in hexadecimal
// digits; empty when none does.
std::string RecordDifference(const Record &expected, const std::string &found);

} // namespace pavonix::e2e
