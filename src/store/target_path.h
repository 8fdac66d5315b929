// Preparation of a download's target path: what exists there, its folder, an old file.
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

// Finds out what exists at a path, which may contain wildcards.
PathKind ProbePath(const WideChar *path);

// Creates the last folder of a file path if it is missing; its parent must exist. True
// when the folder exists (or the path has none), false when it could not be created or
// memory ran out. If it had to be created, `folder` receives it with its trailing '\'
// and a terminator; otherwise `folder` is unchanged. A folder longer than `folder` (260
// units, the longest path of a device) is not created.
[[nodiscard]] bool PrepareTargetDirectory(const WideChar *path, std::span<WideChar> folder);

// The thread error value for "the target is a folder and was not deleted".
constexpr std::uint32_t kErrorTargetIsFolder = 0x10000000;

// True when a delete was attempted, successful or not; false, with the thread
// error value set to kErrorTargetIsFolder, when the path names only folders. Acts
// on the path's first 260 characters.
bool DeleteTargetFile(const WideChar *path);

} // namespace pavonix
