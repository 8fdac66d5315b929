// Wraps the platform's file functions and writes each operation with its result.
#include "platform/last_error.h"
#include "trace/call_state.h"
#include "trace/line.h"
#include "trace/real.h"

namespace pavonix::trace {

namespace {

constexpr int kLongestPath = 1000;

// "operation path: outcome". A null outcome means failure: the system's error follows.
void WriteOutcome(const char *operation, const WideChar *path, const char *outcome)
{
    const std::uint32_t error = outcome == nullptr ? LastSystemError() : 0;
    Line line(operation);
    line.Wide(path, kLongestPath);
    if (outcome != nullptr) {
        line.Text(": ").Text(outcome);
    } else {
        line.Text(": failed, system error ").Number(error);
    }
}

} // namespace

extern "C" {

FindHandle *__wrap_FindFirst(const WideChar *path, FindRecord *record)
{
    FindHandle *search = __real_FindFirst(path, record);
    const char *found = (record->attributes & kAttributeDirectory) != 0 ? "a folder" : "a file";
    WriteOutcome("look for ", path, search == nullptr ? "nothing" : found);
    return search;
}

bool __wrap_CreateFolder(const WideChar *path)
{
    const bool made = __real_CreateFolder(path);
    WriteOutcome("make the folder ", path, made ? "done" : nullptr);
    return made;
}

bool __wrap_RemoveFile(const WideChar *path)
{
    const bool removed = __real_RemoveFile(path);
    WriteOutcome("delete ", path, removed ? "done" : nullptr);
    return removed;
}

Stream *__wrap_OpenStream(const WideChar *path, StreamMode mode)
{
    Stream *stream = __real_OpenStream(path, mode);
    WriteOutcome(mode == StreamMode::kRead ? "open for reading " : "open for writing ", path,
                 stream == nullptr ? nullptr : "done");
    state.streamed = 0;
    return stream;
}

std::uint32_t __wrap_ReadStream(Stream *stream, void *bytes, std::uint32_t length)
{
    const std::uint32_t read = __real_ReadStream(stream, bytes, length);
    state.streamed += read;
    return read;
}

std::uint32_t __wrap_WriteStream(Stream *stream, const void *bytes, std::uint32_t length)
{
    const std::uint32_t written = __real_WriteStream(stream, bytes, length);
    if (written != length) {
        const std::uint32_t error = LastSystemError();
        Line("write: only ").Number(written).Text(" of ").Number(length).Text(" bytes, system error ").Number(error);
    }
    state.streamed += written;
    return written;
}

bool __wrap_CloseStream(Stream *stream)
{
    const bool closed = __real_CloseStream(stream);
    Line line("close the file: ");
    line.Number(state.streamed).Text(closed ? " bytes in all" : " bytes in all, but the last of them may be lost");
    return closed;
}

} // extern "C"

} // namespace pavonix::trace
