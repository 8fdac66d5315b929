// The file contract over Windows: folders, deletion and byte streams.
#include "platform/files.h"

#include "platform/windows/system.h"

namespace pavonix::platform {

namespace {

std::FILE *Native(Stream *stream)
{
    return reinterpret_cast<std::FILE *>(stream);
}

} // namespace

bool CreateFolder(const WideChar *path)
{
    return CreateDirectoryW(path, nullptr) != 0;
}

bool RemoveFile(const WideChar *path)
{
    return DeleteFileW(path) != 0;
}

void SetThreadError(std::uint32_t error)
{
    SetLastError(error);
}

Stream *OpenStream(const WideChar *path, StreamMode mode)
{
    if (mode == StreamMode::kAppend) {
        return reinterpret_cast<Stream *>(OpenShared(path, L"ab"));
    }
    std::FILE *file = OpenShared(path, L"rb");
    if (file != nullptr) {
        DisableBuffer(file); // it would be freed with the key in it
    }
    return reinterpret_cast<Stream *>(file);
}

std::uint32_t ReadStream(Stream *stream, void *bytes, std::uint32_t length)
{
    return static_cast<std::uint32_t>(std::fread(bytes, 1, length, Native(stream)));
}

std::uint32_t WriteStream(Stream *stream, const void *bytes, std::uint32_t length)
{
    return static_cast<std::uint32_t>(std::fwrite(bytes, 1, length, Native(stream)));
}

bool CloseStream(Stream *stream)
{
    const bool flushed = std::fflush(Native(stream)) == 0;
    return std::fclose(Native(stream)) == 0 && flushed;
}

} // namespace pavonix::platform
