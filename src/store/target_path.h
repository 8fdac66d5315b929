// The path that a download is stored at: what lies there, its folder, an old file.
// Paths are NUL-terminated, with '\' as separator.
#pragma once

#include "platform/wide_char.h"

#include <cstdint>
#include <span>

namespace pavonix {

enum class PathKind {
    kNothing, // no match, or not a path that can be searched
    kFolder,  // only folders match
    kFile,    // at least one match is not a folder
};

// What lies at a path, which may hold wildcards.
PathKind ProbePath(const WideChar *path);

// Makes the last folder of a file path when it is missing; its parent must exist.
// True when the folder is there (or the path has none), false when it could not be
// made or there is no memory. A folder that had to be made is written to `folder`,
// with its trailing '\' and a terminator; one that exists leaves it untouched. A
// folder longer than that room (260 units, no longer path can exist on a device)
// cannot be made.
[[nodiscard]] bool PrepareTargetDirectory(const WideChar *path, std::span<WideChar> folder);

// The thread error value that says "this is a folder, I leave it alone".
constexpr std::uint32_t kErrorTargetIsFolder = 0x10000000;

// True when a delete was attempted, whatever came of it; false, with the thread
// error value set to kErrorTargetIsFolder, when the path names only folders. Acts
// on the path's first 260 characters.
bool DeleteTargetFile(const WideChar *path);

} // namespace pavonix
