// coredll.dll: searches, with the device's find record.
#include "system/coredll.h"
#include "device_options.h"
#include "system/device_path.h"
#include "system/open_handles.h"
#include "platform/code_pages.h"

#include <cstddef>
#include <cstring>
#include <deque>
#include <filesystem>
#include <memory>
#include <string>

namespace pavonix::device {

namespace {

constexpr std::uint32_t kInvalidHandle = 0xFFFFFFFF;

// Unlike the desktop's record it has an object id and no short name.
struct FindData {
    std::uint32_t attributes;
    std::uint32_t times[6];
    std::uint32_t sizeHigh, sizeLow, objectId;
    WideChar name[260];
};
static_assert(sizeof(FindData) == 560 && offsetof(FindData, name) == 40);

// The paths that a running search has not returned yet.
using Search = std::deque<std::string>;

// Writes the whole record, as the device does, so that a shorter one is overrun and noticed.
void WriteNextRecord(Search *search, FindData *data)
{
    const std::string found = std::move(search->front());
    search->pop_front();
    std::memset(data, 0, sizeof *data);
    data->attributes = DevicePath::AttributesOf(found);
    const std::string name = found.substr(found.rfind('/') + 1);
    platform::BytesToWide(platform::kUtf8CodePage, name.data(), static_cast<int>(name.size()), data->name,
                          static_cast<int>(std::size(data->name)) - 1);
}

Search Matches(const std::string &path)
{
    const std::size_t nameAt = path.rfind('/') + 1;
    const std::string folder = path.substr(0, nameAt), pattern = path.substr(nameAt);
    if (pattern.find_first_of("*?") == std::string::npos) {
        return DevicePath::AttributesOf(path) != 0 ? Search{path} : Search{};
    }
    Search found;
    std::error_code failed;
    for (const auto &entry : std::filesystem::directory_iterator(folder, failed)) {
        const std::string name = entry.path().filename();
        if (MatchesPattern(pattern, name)) {
            found.push_back(folder + name);
        }
    }
    return found;
}

Search *FindFirstFile(const WideChar *path, FindData *data)
{
    auto *const none = reinterpret_cast<Search *>(kInvalidHandle);
    const DevicePath native(path, PathOf::kSearch);
    std::string name = native.name();
    if (!native.valid() || (deviceOptions.searchRejectsTrailing && name.ends_with('/'))) {
        return FailWith(kErrorFileNotFound, none);
    }
    name.erase(std::max<std::size_t>(name.find_last_not_of('/') + 1, 1));
    auto search = std::make_unique<Search>(Matches(name));
    if (search->empty()) {
        return FailWith(kErrorFileNotFound, none);
    }
    WriteNextRecord(search.get(), data);
    openHandles.searches.Add(search.get());
    return search.release();
}

int FindNextFile(Search *search, FindData *data)
{
    if (!openHandles.searches.Has(search)) {
        Fatal("FindNextFileW on a search that is not open");
    }
    if (search->empty()) {
        return FailWith(kErrorNoMoreFiles, 0);
    }
    WriteNextRecord(search, data);
    return 1;
}

int FindClose(Search *search)
{
    if (!openHandles.searches.Remove(search)) {
        Fatal("FindClose of a search that is not open");
    }
    delete search;
    return 1;
}

} // namespace

void AddSearchImports(std::vector<Import> &table)
{
    table.push_back(Failing<&FindFirstFile, kInvalidHandle>(kCoreDll, "FindFirstFileW"));
    table.push_back(Failing<&FindNextFile, 0>(kCoreDll, "FindNextFileW"));
    table.push_back(Unfailing<&FindClose>(kCoreDll, "FindClose"));
}

} // namespace pavonix::device
