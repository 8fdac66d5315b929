#include "store/prepare_target_directory.h"

#include "platform/files.h"
#include "rsa/text/allocate.h"
#include "store/probe_path.h"

#include <algorithm>
#include <memory>

namespace pavonix {

namespace {

constexpr WideChar kSeparator = '\\';

// The length of the folder part: up to and with the last separator, 0 without one.
std::size_t FolderLength(const WideChar *path)
{
    std::size_t length = 0;
    for (std::size_t i = 0; path[i] != 0; ++i) {
        length = path[i] == kSeparator ? i + 1 : length;
    }
    return length;
}

// Every pass looks at the whole folder, once for each separator in it, and not at
// one level after the other: only the last level is ever made.
bool MakeFolder(const WideChar *folder)
{
    for (const WideChar *unit = folder; *unit != 0; ++unit) {
        if (*unit == kSeparator && ProbePath(folder) == kPathNothing && ProbePath(folder) != kPathFolder &&
            !platform::CreateFolder(folder)) {
            return false;
        }
    }
    return true;
}

} // namespace

int PrepareTargetDirectory(const WideChar *path, std::span<WideChar> folder)
{
    if (path == nullptr) {
        return 0;
    }
    const std::size_t length = FolderLength(path);
    const std::unique_ptr<WideChar[]> part(AllocateArray<WideChar>(length + 1));
    if (part == nullptr) {
        return 0;
    }
    std::copy_n(path, length, part.get());
    part[length] = 0;
    if (ProbePath(part.get()) != kPathNothing) {
        return 1;
    }
    if (length + 1 > folder.size()) {
        return 0;
    }
    std::copy_n(part.get(), length + 1, folder.begin());
    return MakeFolder(part.get()) ? 1 : 0;
}

} // namespace pavonix
