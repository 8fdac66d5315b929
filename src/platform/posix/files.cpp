// The file contract over POSIX: folders, deletion and byte streams.
#include "platform/files.h"

#include "platform/posix/utf8_path.h"

#include <cerrno>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace pavonix::platform {

bool CreateFolder(const WideChar *path)
{
    const Utf8Path name(path);
    return name.valid() && mkdir(name.c_str(), 0777) == 0;
}

bool RemoveFile(const WideChar *path)
{
    const Utf8Path name(path);
    return name.valid() && unlink(name.c_str()) == 0;
}

void SetThreadError(std::uint32_t error)
{
    errno = static_cast<int>(error); // the thread error value of this system
}

Stream *OpenStream(const WideChar *path, StreamMode mode)
{
    const Utf8Path name(path);
    if (!name.valid()) {
        return nullptr;
    }
    std::FILE *file = std::fopen(name.c_str(), mode == StreamMode::kRead ? "rbe" : "abe");
    if (file != nullptr && mode == StreamMode::kRead) {
        std::setvbuf(file, nullptr, _IONBF, 0); // its buffer would be freed with the key in it
    }
    return reinterpret_cast<Stream *>(file);
}

std::uint32_t ReadStream(Stream *stream, void *bytes, std::uint32_t length)
{
    return static_cast<std::uint32_t>(std::fread(bytes, 1, length, reinterpret_cast<std::FILE *>(stream)));
}

std::uint32_t WriteStream(Stream *stream, const void *bytes, std::uint32_t length)
{
    return static_cast<std::uint32_t>(std::fwrite(bytes, 1, length, reinterpret_cast<std::FILE *>(stream)));
}

bool CloseStream(Stream *stream)
{
    return std::fclose(reinterpret_cast<std::FILE *>(stream)) == 0;
}

} // namespace pavonix::platform
