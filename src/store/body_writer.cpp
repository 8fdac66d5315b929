#include "store/body_writer.h"

#include "http/http_connection.h"
#include "platform/code_pages.h"

namespace pavonix {

namespace {

constexpr int kLongestPath = 260; // bytes, terminator included

bool HasNarrowForm(const WideChar *path)
{
    bool lossy = false;
    const int bytes = platform::WideToBytes(platform::kAnsiCodePage, path, WideLength(path), nullptr, 0, &lossy);
    return bytes > 0 && bytes < kLongestPath && !lossy;
}

} // namespace

void BodyWriter::Open(const WideChar *path)
{
    if (HasNarrowForm(path)) {
        stream_ = platform::OpenStream(path, platform::StreamMode::kAppend);
    }
}

void BodyWriter::Write(const char *bytes, std::uint32_t count)
{
    if (usable() && platform::WriteStream(stream_, bytes, count) != count) {
        failed_ = true;
    }
}

void BodyWriter::Close()
{
    if (stream_ != nullptr) {
        (void)platform::CloseStream(stream_);
        stream_ = nullptr;
    }
}

void BodyWriter::WriteBody(HttpConnection *connection)
{
    const std::uint32_t held = kFirstReception - connection->GetHeadLength();
    const std::uint32_t announced = connection->GetContentLength();
    const std::uint32_t expected = announced == 0 ? held : announced;
    const std::uint32_t first = expected < held ? expected : held;
    Write(connection->GetBodyPrefix(), first);
    std::uint64_t written = first; // 64 bits: the announced length may be the largest 32-bit number
    while (written < expected) {
        char piece[kFirstReception];
        const int received = connection->Receive(piece, sizeof piece);
        if (received <= 0) {
            break;
        }
        Write(piece, static_cast<std::uint32_t>(received));
        written += static_cast<std::uint32_t>(received);
    }
}

} // namespace pavonix
