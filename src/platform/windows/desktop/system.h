// Desktop Windows: the system's own headers, and its side of the differences.
#pragma once

#define WIN32_LEAN_AND_MEAN
#include <winsock2.h>
#include <windows.h>

#include <wincrypt.h>

#include <cstdio>
#include <share.h>

// Looked up like on the device, though every desktop has them.
#define PAVONIX_CRYPT_FUNCTION(name)                                                                                   \
    reinterpret_cast<decltype(&(name))>(reinterpret_cast<void *>(GetProcAddress(LoadLibraryW(L"advapi32.dll"), #name)))

namespace pavonix::platform {

// A stream that denies nothing to other openers.
inline std::FILE *OpenShared(const wchar_t *path, const wchar_t *mode)
{
    return _wfsopen(path, mode, _SH_DENYNO);
}

// For a stream that was just opened.
inline void DisableBuffer(std::FILE *stream)
{
    std::setvbuf(stream, nullptr, _IONBF, 0);
}

// The length of the root that a path begins with: 3 for a drive, as in "C:\", that of
// "\\server\share\" for a share, 0 for neither.
inline int RootLength(const wchar_t *path)
{
    if (path[0] != 0 && path[1] == L':' && path[2] == L'\\') {
        return 3;
    }
    if (path[0] != L'\\' || path[1] != L'\\') {
        return 0;
    }
    int separators = 0;
    for (int i = 2; path[i] != 0; ++i) {
        separators += path[i] == L'\\' ? 1 : 0;
        if (separators == 2) {
            return i + 1;
        }
    }
    return 0;
}

// True for the root of an existing drive or share, which no search finds because it is
// not an entry of a folder.
inline bool IsRoot(const wchar_t *path)
{
    const int length = RootLength(path);
    return length > 0 && path[length] == 0 && GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

} // namespace pavonix::platform
