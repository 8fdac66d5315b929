// Part of a port: file searches, folders, deletion and byte streams.
// Paths are NUL-terminated UTF-16 with '\' as the only separator.
#pragma once

#include "platform/wide_char.h"

#include <cstdint>

namespace pavonix::platform {

constexpr std::uint32_t kAttributeDirectory = 0x10;

struct FindRecord {
    std::uint32_t attributes; // kAttributeDirectory is the only bit that is read
};

struct FindHandle; // opaque, one running search
struct Stream;     // opaque, one open file

enum class StreamMode {
    kRead,   // "rb"
    kAppend, // "ab", creates a missing file, denies nothing to other openers
};

extern "C" {

// FindFirstFileW: searches for a path whose last component may hold the
// wildcards '*' and '?'. Null when nothing matches or the path cannot be
// searched. A path that ends in '\' must find the folder itself, and the root
// must be found as a folder, even if the system's own search does not find them.
// "." and ".." are never entries.
FindHandle *FindFirst(const WideChar *path, FindRecord *record);
// FindNextFileW: false when the entries are used up.
[[nodiscard]] bool FindNext(FindHandle *search, FindRecord *record);
// FindClose.
void EndFind(FindHandle *search);

// CreateDirectoryW: makes one level. False when it exists or cannot be made.
[[nodiscard]] bool CreateFolder(const WideChar *path);
// DeleteFileW: false when it is missing or cannot be removed.
[[nodiscard]] bool RemoveFile(const WideChar *path);
// SetLastError, on the calling thread.
void SetThreadError(std::uint32_t error);

// Opens a file as a byte stream. Null on failure. The content may be a key: reading must
// not use a buffer that is freed with the key in it.
Stream *OpenStream(const WideChar *path, StreamMode mode);
// Bytes read; less than `length` only at the end of the file or on an error.
std::uint32_t ReadStream(Stream *stream, void *bytes, std::uint32_t length);
// Bytes written; less than `length` is a failed write.
std::uint32_t WriteStream(Stream *stream, const void *bytes, std::uint32_t length);
// Flushes and closes; false when the flush failed. The stream is gone either way.
[[nodiscard]] bool CloseStream(Stream *stream);

} // extern "C"

} // namespace pavonix::platform
