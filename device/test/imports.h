// The functions that a DLL imports, read from its file.
#pragma once

#include <string_view>

namespace pavonix::device_test {

// Calls `visit` with the library and the name of each import ("" for one by ordinal).
// False if the bytes are no PE file for ARM whose import table lies within them.
bool ForEachImport(std::string_view image, void *context,
                   void (*visit)(void *context, const char *library, const char *name));

} // namespace pavonix::device_test
