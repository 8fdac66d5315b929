// The file contract over POSIX: folders, deletion and byte streams.
#include "platform/files.h"

#include "platform/posix/utf8_path.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace pavonix::platform {

// Not a stdio stream, whose buffer would be freed with a key in it. Only writing is buffered.
struct Stream {
    static constexpr std::uint32_t kRoom = 16384;

    int fd;
    bool ended = false;     // reading reached the end of the file or failed
    std::uint32_t held = 0; // bytes not written yet
    char buffer[kRoom];
};

namespace {

// False on an error; the rest is still held.
bool Flush(Stream *stream)
{
    std::uint32_t written = 0;
    while (written < stream->held) {
        const ssize_t count = write(stream->fd, stream->buffer + written, stream->held - written);
        if (count > 0) {
            written += static_cast<std::uint32_t>(count);
        } else if (count == 0 || errno != EINTR) {
            break;
        }
    }
    std::memmove(stream->buffer, stream->buffer + written, stream->held - written);
    stream->held -= written;
    return stream->held == 0;
}

} // namespace

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
    const int flags = mode == StreamMode::kRead ? O_RDONLY : O_WRONLY | O_CREAT | O_APPEND;
    const int fd = name.valid() ? open(name.c_str(), flags | O_CLOEXEC, 0666) : -1;
    if (fd < 0) {
        return nullptr;
    }
    Stream *stream = new (std::nothrow) Stream;
    if (stream == nullptr) {
        close(fd);
        return nullptr;
    }
    stream->fd = fd;
    return stream;
}

std::uint32_t ReadStream(Stream *stream, void *bytes, std::uint32_t length)
{
    std::uint32_t filled = 0;
    while (filled < length && !stream->ended) {
        const ssize_t count = read(stream->fd, static_cast<char *>(bytes) + filled, length - filled);
        if (count > 0) {
            filled += static_cast<std::uint32_t>(count);
        } else if (count == 0 || errno != EINTR) {
            stream->ended = true;
        }
    }
    return filled;
}

std::uint32_t WriteStream(Stream *stream, const void *bytes, std::uint32_t length)
{
    std::uint32_t taken = 0;
    while (taken < length && (stream->held < Stream::kRoom || Flush(stream))) {
        const std::uint32_t count = std::min(length - taken, Stream::kRoom - stream->held);
        std::memcpy(stream->buffer + stream->held, static_cast<const char *>(bytes) + taken, count);
        stream->held += count;
        taken += count;
    }
    return taken;
}

bool CloseStream(Stream *stream)
{
    const bool flushed = Flush(stream);
    const bool closed = close(stream->fd) == 0 || errno == EINTR;
    delete stream;
    return flushed && closed;
}

} // namespace pavonix::platform
