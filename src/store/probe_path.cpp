#include "store/probe_path.h"

#include "platform/files.h"

namespace pavonix {

namespace {

bool IsFolder(const platform::FindRecord &record)
{
    return (record.attributes & platform::kAttributeDirectory) != 0;
}

} // namespace

int ProbePath(const WideChar *path)
{
    platform::FindRecord record = {};
    platform::FindHandle *search = path == nullptr ? nullptr : platform::FindFirst(path, &record);
    if (search == nullptr) {
        return kPathNothing;
    }
    bool onlyFolders = IsFolder(record);
    while (onlyFolders && platform::FindNext(search, &record)) {
        onlyFolders = IsFolder(record);
    }
    platform::EndFind(search);
    return onlyFolders ? kPathFolder : kPathFile;
}

} // namespace pavonix
