// The search contract over Windows.
#include "platform/files.h"

#include "platform/windows/system.h"

namespace pavonix::platform {

namespace {

// The handle of a search that found a root. It has one entry and nothing to close.
char rootSearch;

FindHandle *RootSearch()
{
    return reinterpret_cast<FindHandle *>(&rootSearch);
}

bool IsDots(const wchar_t *name)
{
    return name[0] == L'.' && (name[1] == 0 || (name[1] == L'.' && name[2] == 0));
}

int LengthWithoutSeparators(const wchar_t *path)
{
    int length = WideLength(path);
    while (length > 0 && path[length - 1] == L'\\') {
        --length;
    }
    return length;
}

// The system's search, which finds neither a root nor, on most systems, a
// folder whose path ends in a separator: the search is made without it.
HANDLE Search(const wchar_t *path, int barePathLength, WIN32_FIND_DATAW *found)
{
    const HANDLE search = FindFirstFileW(path, found);
    if (search != INVALID_HANDLE_VALUE || path[barePathLength] == 0 || barePathLength >= MAX_PATH) {
        return search;
    }
    wchar_t barePath[MAX_PATH];
    for (int i = 0; i < barePathLength; ++i) {
        barePath[i] = path[i];
    }
    barePath[barePathLength] = 0;
    return FindFirstFileW(barePath, found);
}

} // namespace

FindHandle *FindFirst(const WideChar *path, FindRecord *record)
{
    const int barePathLength = LengthWithoutSeparators(path);
    if ((barePathLength == 0 && path[0] != 0) || IsRoot(path)) {
        record->attributes = kAttributeDirectory;
        return RootSearch();
    }
    WIN32_FIND_DATAW found;
    const HANDLE search = Search(path, barePathLength, &found);
    if (search == INVALID_HANDLE_VALUE) {
        return nullptr;
    }
    record->attributes = found.dwFileAttributes;
    const auto handle = static_cast<FindHandle *>(search);
    if (IsDots(found.cFileName) && !FindNext(handle, record)) {
        EndFind(handle);
        return nullptr;
    }
    return handle;
}

bool FindNext(FindHandle *search, FindRecord *record)
{
    if (search == RootSearch()) {
        return false;
    }
    WIN32_FIND_DATAW found;
    do {
        if (!FindNextFileW(search, &found)) {
            return false;
        }
    } while (IsDots(found.cFileName));
    record->attributes = found.dwFileAttributes;
    return true;
}

void EndFind(FindHandle *search)
{
    if (search != RootSearch()) {
        FindClose(search);
    }
}

} // namespace pavonix::platform
