// Reads and writes whole files of the device.
#pragma once

#include "test/system.h"
#include "test/text.h"

#include <string_view>

namespace pavonix::device_test {

// Reads at most `room` bytes; an empty result for a file that cannot be read.
// *found is set to whether it could be.
std::string_view ReadWhole(const wchar_t *path, char *room, unsigned size, bool *found = nullptr);

// False if the file cannot be created or written in full.
bool WriteWhole(const wchar_t *path, std::string_view bytes);

} // namespace pavonix::device_test
