// coredll.dll: searches, with the device's find record.
#include "system/coredll.h"
#include "device_options.h"
#include "system/holdings.h"
#include "platform/code_pages.h"
#include "platform/files.h"
#include "platform/posix/utf8_path.h"

#include <cstddef>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fnmatch.h>
#include <memory>
#include <string>

namespace pavonix::device {

namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kInvalidHandle = 0xFFFFFFFF;

// Unlike the desktop's record it has an object id and no short name.
struct FindData {
    std::uint32_t attributes;
    std::uint32_t times[6];
    std::uint32_t sizeHigh, sizeLow, objectId;
    WideChar name[260];
};
static_assert(sizeof(FindData) == 560 && offsetof(FindData, name) == 40);

// What a running search has not told yet.
using Search = std::deque<fs::path>;

// Writes the whole record, as the device does, so that a shorter one is overrun and found out.
void TellNext(Search *search, FindData *data)
{
    const fs::path found = std::move(search->front());
    search->pop_front();
    std::error_code ignored;
    std::memset(data, 0, sizeof *data);
    data->attributes = fs::is_directory(found, ignored) ? platform::kAttributeDirectory : 0;
    const std::string name = found.filename();
    platform::BytesToWide(platform::kUtf8CodePage, name.data(), static_cast<int>(name.size()), data->name,
                          static_cast<int>(std::size(data->name)) - 1);
}

Search Matches(const fs::path &path)
{
    std::error_code failed;
    const std::string pattern = path.filename();
    if (pattern.find_first_of("*?") == std::string::npos) {
        return fs::exists(path, failed) ? Search{path} : Search{};
    }
    Search found;
    for (const fs::directory_entry &entry : fs::directory_iterator(path.parent_path(), failed)) {
        if (fnmatch(pattern.c_str(), entry.path().filename().c_str(), FNM_NOESCAPE) == 0) {
            found.push_back(entry.path());
        }
    }
    return found;
}

Search *FindFirstFile(const WideChar *path, FindData *data)
{
    auto *const none = reinterpret_cast<Search *>(kInvalidHandle);
    const platform::Utf8Path native(path);
    std::string name = native.c_str();
    if (!native.valid() || (deviceOptions.searchRejectsTrailing && name.ends_with('/'))) {
        return FailWith(kErrorFileNotFound, none);
    }
    name.erase(std::max<std::size_t>(name.find_last_not_of('/') + 1, 1));
    auto search = std::make_unique<Search>(Matches(name));
    if (search->empty()) {
        return FailWith(kErrorFileNotFound, none);
    }
    TellNext(search.get(), data);
    holdings.searches.Add(search.get());
    return search.release();
}

int FindNextFile(Search *search, FindData *data)
{
    if (!holdings.searches.Has(search)) {
        Misuse("FindNextFileW on a search that is not open");
    }
    if (search->empty()) {
        return FailWith(kErrorNoMoreFiles, 0);
    }
    TellNext(search, data);
    return 1;
}

int FindClose(Search *search)
{
    if (!holdings.searches.Remove(search)) {
        Misuse("FindClose of a search that is not open");
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
