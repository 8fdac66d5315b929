// Making sure that the target's folder exists.
#pragma once

#include "platform/wide_char.h"

#include <span>

namespace pavonix {

// Makes the last folder of a file path when it is missing; its parent must exist.
// 1 when the folder is there (or the path has none), 0 when it could not be made
// or there is no memory. A folder that had to be made is written to `folder`,
// with its trailing '\' and a terminator; one that exists leaves it untouched. A
// folder longer than that room (260 units, no longer path can exist on a device)
// cannot be made.
int PrepareTargetDirectory(const WideChar *path, std::span<WideChar> folder);

} // namespace pavonix
