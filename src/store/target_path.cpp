#include "store/target_path.h"

#include "platform/files.h"
#include "rsa/text/allocate.h"

#include <algorithm>
#include <memory>

namespace pavonix {

namespace {

constexpr WideChar kSeparator = '\\';

bool IsFolder(const platform::FindRecord &record)
{
    return (record.attributes & platform::kAttributeDirectory) != 0;
}

// The length of the folder part: up to and with the last separator, 0 without one.
std::size_t FolderLength(const WideChar *path)
{
    std::size_t length = 0;
    for (std::size_t i = 0; path[i] != 0; ++i) {
        length = path[i] == kSeparator ? i + 1 : length;
    }
    return length;
}

// Each pass, one for each separator, looks at the whole folder and not at one level after
// the other: only the last level is ever created. The second probe of a pass sees what
// another process may have created since the first.
bool MakeFolder(const WideChar *folder)
{
    for (const WideChar *unit = folder; *unit != 0; ++unit) {
        if (*unit == kSeparator && ProbePath(folder) == PathKind::kNothing && ProbePath(folder) != PathKind::kFolder &&
            !platform::CreateFolder(folder)) {
            return false;
        }
    }
    return true;
}

} // namespace

PathKind ProbePath(const WideChar *path)
{
    platform::FindRecord record = {};
    platform::FindHandle *search = path == nullptr ? nullptr : platform::FindFirst(path, &record);
    if (search == nullptr) {
        return PathKind::kNothing;
    }
    bool onlyFolders = IsFolder(record);
    while (onlyFolders && platform::FindNext(search, &record)) {
        onlyFolders = IsFolder(record);
    }
    platform::EndFind(search);
    return onlyFolders ? PathKind::kFolder : PathKind::kFile;
}

bool PrepareTargetDirectory(const WideChar *path, std::span<WideChar> folder)
{
    if (path == nullptr) {
        return false;
    }
    const std::size_t length = FolderLength(path);
    const std::unique_ptr<WideChar[]> part(AllocateArray<WideChar>(length + 1));
    if (part == nullptr) {
        return false;
    }
    std::copy_n(path, length, part.get());
    part[length] = 0;
    if (ProbePath(part.get()) != PathKind::kNothing) {
        return true;
    }
    if (length + 1 > folder.size()) {
        return false;
    }
    std::copy_n(part.get(), length + 1, folder.begin());
    return MakeFolder(part.get());
}

bool DeleteTargetFile(const WideChar *path)
{
    constexpr int kLongestPath = 260;
    WideChar target[kLongestPath + 2] = {};
    for (int i = 0; i < kLongestPath && path[i] != 0; ++i) {
        target[i] = path[i];
    }
    if (ProbePath(target) == PathKind::kFolder) {
        platform::SetThreadError(kErrorTargetIsFolder);
        return false;
    }
    (void)platform::RemoveFile(target);
    return true;
}

} // namespace pavonix
