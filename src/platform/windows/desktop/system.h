// Desktop Windows: the system's own headers, and its side of the differences.
#pragma once

#define WIN32_LEAN_AND_MEAN
#include <winsock2.h>
#include <windows.h>

#include <wincrypt.h>

#include <cstdio>
#include <share.h>

namespace pavonix::platform {

// A stream that denies nothing to other openers.
inline std::FILE *OpenShared(const wchar_t *path, const wchar_t *mode)
{
    return _wfsopen(path, mode, _SH_DENYNO);
}

// Whether the path is the root of a drive that exists, as in "C:\". No search
// finds it, because it is an entry of nothing.
inline bool IsDriveRoot(const wchar_t *path)
{
    return path[0] != 0 && path[1] == L':' && path[2] == L'\\' && path[3] == 0 &&
           GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

} // namespace pavonix::platform
