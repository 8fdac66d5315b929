// Removing an old file at the target path.
#pragma once

#include "platform/wide_char.h"

#include <cstdint>

namespace pavonix {

// The thread error value that says "this is a folder, I leave it alone".
constexpr std::uint32_t kErrorTargetIsFolder = 0x10000000;

// 1 when a delete was attempted, whatever came of it; 0, with the thread error
// value set to kErrorTargetIsFolder, when the path names only folders. Acts on
// the path's first 260 characters.
int DeleteTargetFile(const WideChar *path);

} // namespace pavonix
