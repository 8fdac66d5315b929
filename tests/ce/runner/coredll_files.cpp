// coredll.dll: searches, folders and deletion, with the device's records.
#include "coredll.h"
#include "device_options.h"
#include "holdings.h"
#include "platform/files.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace pavonix::ce {

namespace {

constexpr std::uint32_t kInvalidHandle = 0xFFFFFFFF;

// The device's find record. Unlike the desktop's it has an object id and no
// short name.
struct FindData {
    std::uint32_t attributes;
    std::uint32_t times[6];
    std::uint32_t sizeHigh, sizeLow, objectId;
    WideChar name[260];
};
static_assert(sizeof(FindData) == 560 && offsetof(FindData, name) == 40);

// The whole record is written, as the device does, so that a caller with a
// shorter one is found out. Of a wildcard search the name stays the pattern:
// the library reads only attributes.
void Fill(FindData *data, const platform::FindRecord &record, std::u16string_view component)
{
    std::memset(data, 0, sizeof *data);
    data->attributes = record.attributes;
    component.substr(0, std::size(data->name) - 1).copy(data->name, component.size());
}

std::u16string_view LastComponent(std::u16string_view path)
{
    path = path.substr(0, path.find_last_not_of(u'\\') + 1);
    return path.substr(path.find_last_of(u'\\') + 1);
}

platform::FindHandle *FindFirstFile(const WideChar *path, FindData *data)
{
    auto *const none = reinterpret_cast<platform::FindHandle *>(kInvalidHandle);
    std::u16string_view text(path);
    if (deviceOptions.searchRejectsTrailing && text.ends_with(u'\\')) {
        return FailWith(kErrorFileNotFound, none);
    }
    platform::FindRecord record = {};
    platform::FindHandle *search = platform::FindFirst(path, &record);
    if (search == nullptr) {
        return FailWith(kErrorFileNotFound, none);
    }
    holdings.searches.Add(search);
    Fill(data, record, LastComponent(text));
    return search;
}

int FindNextFile(platform::FindHandle *search, FindData *data)
{
    if (!holdings.searches.Has(search)) {
        Misuse("FindNextFileW on a search that is not open");
    }
    platform::FindRecord record = {};
    if (!platform::FindNext(search, &record)) {
        return FailWith(kErrorNoMoreFiles, 0);
    }
    data->attributes = record.attributes;
    return 1;
}

int FindClose(platform::FindHandle *search)
{
    if (!holdings.searches.Remove(search)) {
        Misuse("FindClose of a search that is not open");
    }
    platform::EndFind(search);
    return 1;
}

int CreateDirectory(const WideChar *path, const void *)
{
    return platform::CreateFolder(path) ? 1 : FailWith(kErrorAccessDenied, 0);
}

int DeleteFile(const WideChar *path)
{
    return platform::RemoveFile(path) ? 1 : FailWith(kErrorAccessDenied, 0);
}

} // namespace

void AddFileImports(std::vector<Import> &table)
{
    table.push_back(Failing<&FindFirstFile, kInvalidHandle>(kCoreDll, "FindFirstFileW"));
    table.push_back(Failing<&FindNextFile, 0>(kCoreDll, "FindNextFileW"));
    table.push_back(Unfailing<&FindClose>(kCoreDll, "FindClose"));
    table.push_back(Failing<&CreateDirectory, 0>(kCoreDll, "CreateDirectoryW"));
    table.push_back(Failing<&DeleteFile, 0>(kCoreDll, "DeleteFileW"));
}

} // namespace pavonix::ce
