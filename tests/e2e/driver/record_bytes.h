// The purchase record, byte by byte.
#pragma once

#include "driver/scenario.h"

#include <string>

namespace pavonix::e2e {

// What every byte of a record holds before the call.
inline constexpr char kUntouchedByte = '\xA5';

// Where the bytes of a record after the call first differ from what is expected,
// in words; empty when they do not.
std::string RecordDifference(const Record &expected, const std::string &found);

} // namespace pavonix::e2e
