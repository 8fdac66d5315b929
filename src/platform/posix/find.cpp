// The search contract over POSIX directories.
#include "platform/files.h"

#include "platform/posix/utf8_path.h"

#include <dirent.h>
#include <fnmatch.h>
#include <sys/stat.h>

#include <cstring>
#include <new>

namespace pavonix::platform {

// A search without wildcards has one entry and needs no directory.
struct FindHandle {
    DIR *folder = nullptr;
    char pattern[256]; // the last component; no file name is longer
};

namespace {

bool IsFolder(const struct stat &entry)
{
    return S_ISDIR(entry.st_mode);
}

void SetRecord(FindRecord *record, const struct stat &entry)
{
    record->attributes = IsFolder(entry) ? kAttributeDirectory : 0;
}

// Only '*' and '?' are wildcards. fnmatch also supports brackets, which are escaped, and
// backslash escapes, which a component of a path cannot contain.
bool QuotePattern(const char *component, char *pattern, std::size_t room)
{
    std::size_t length = 0;
    for (; *component != 0; ++component) {
        if (length + 2 >= room) {
            return false;
        }
        if (*component == '[') {
            pattern[length++] = '\\';
        }
        pattern[length++] = *component;
    }
    pattern[length] = 0;
    return true;
}

void StripTrailingSeparators(char *path)
{
    std::size_t length = std::strlen(path);
    while (length > 1 && path[length - 1] == '/') {
        path[--length] = 0;
    }
}

// Splits "folder/pattern" at the last separator and opens the folder.
DIR *OpenFolderOf(char *path, const char **component)
{
    char *separator = std::strrchr(path, '/');
    if (separator == nullptr) {
        *component = path;
        return opendir(".");
    }
    *component = separator + 1;
    *separator = 0;
    return opendir(separator == path ? "/" : path);
}

FindHandle *FindWildcard(char *path, FindRecord *record)
{
    FindHandle *search = new (std::nothrow) FindHandle;
    if (search == nullptr) {
        return nullptr;
    }
    const char *component = nullptr;
    search->folder = OpenFolderOf(path, &component);
    if (search->folder != nullptr && QuotePattern(component, search->pattern, sizeof search->pattern) &&
        FindNext(search, record)) {
        return search;
    }
    EndFind(search);
    return nullptr;
}

} // namespace

FindHandle *FindFirst(const WideChar *path, FindRecord *record)
{
    Utf8Path name(path);
    if (!name.valid()) {
        return nullptr;
    }
    StripTrailingSeparators(name.data());
    if (std::strpbrk(name.c_str(), "*?") != nullptr) {
        return FindWildcard(name.data(), record);
    }
    struct stat entry;
    if (stat(name.c_str(), &entry) != 0) {
        return nullptr;
    }
    SetRecord(record, entry);
    return new (std::nothrow) FindHandle;
}

bool FindNext(FindHandle *search, FindRecord *record)
{
    if (search->folder == nullptr) {
        return false;
    }
    const int folder = dirfd(search->folder);
    while (const dirent *found = readdir(search->folder)) {
        const bool isDots = std::strcmp(found->d_name, ".") == 0 || std::strcmp(found->d_name, "..") == 0;
        struct stat entry;
        if (!isDots && folder >= 0 && fnmatch(search->pattern, found->d_name, 0) == 0 &&
            fstatat(folder, found->d_name, &entry, 0) == 0) {
            SetRecord(record, entry);
            return true;
        }
    }
    return false;
}

void EndFind(FindHandle *search)
{
    if (search->folder != nullptr) {
        closedir(search->folder);
    }
    delete search;
}

} // namespace pavonix::platform
