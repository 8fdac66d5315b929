// What lies at a path.
#pragma once

#include "platform/wide_char.h"

namespace pavonix {

constexpr int kPathNothing = 0; // no match, or not a path that can be searched
constexpr int kPathFolder = 1;  // only folders match
constexpr int kPathFile = 2;    // at least one match is not a folder

// The path is NUL-terminated, with '\' as separator, and may hold wildcards.
int ProbePath(const WideChar *path);

} // namespace pavonix
