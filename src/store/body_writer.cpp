#include "store/body_writer.h"

#include "platform/code_pages.h"
#include "store/body_source.h"

namespace pavonix {

namespace {

constexpr int kLongestPath = 260;  // bytes, terminator included
constexpr int kPieceLength = 1024; // bytes of one reception

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

void BodyWriter::WriteBody(BodySource *body)
{
    const std::span<const char> held = body->held();
    const auto heldLength = static_cast<std::uint32_t>(held.size());
    const std::uint32_t expected = body->announced() == 0 ? heldLength : body->announced();
    const std::uint32_t first = expected < heldLength ? expected : heldLength;
    Write(held.data(), first);
    std::uint64_t written = first; // 64 bits: the announced length may be the largest 32-bit number
    while (written < expected) {
        char piece[kPieceLength];
        const int received = body->Receive(piece, kPieceLength);
        if (received <= 0) {
            break;
        }
        Write(piece, static_cast<std::uint32_t>(received));
        written += static_cast<std::uint32_t>(received);
    }
}

} // namespace pavonix
