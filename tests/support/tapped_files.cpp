// The tap on the platform's files.
#include "platform/files.h"
#include "support/tap.h"

#include <algorithm>

using namespace pavonix;
using pavonix::tap::Enter;
using pavonix::tap::TheState;

extern "C" {

platform::FindHandle *__real_FindFirst(const WideChar *path, platform::FindRecord *record);
bool __real_FindNext(platform::FindHandle *search, platform::FindRecord *record);
void __real_EndFind(platform::FindHandle *search);
bool __real_CreateFolder(const WideChar *path);
bool __real_RemoveFile(const WideChar *path);
void __real_SetThreadError(std::uint32_t error);
platform::Stream *__real_OpenStream(const WideChar *path, platform::StreamMode mode);
std::uint32_t __real_ReadStream(platform::Stream *stream, void *bytes, std::uint32_t length);
std::uint32_t __real_WriteStream(platform::Stream *stream, const void *bytes, std::uint32_t length);
bool __real_CloseStream(platform::Stream *stream);

platform::FindHandle *__wrap_FindFirst(const WideChar *path, platform::FindRecord *record)
{
    platform::FindHandle *search = Enter("FindFirst") ? nullptr : __real_FindFirst(path, record);
    TheState().held.searches += search != nullptr ? 1 : 0;
    return search;
}

bool __wrap_FindNext(platform::FindHandle *search, platform::FindRecord *record)
{
    return !Enter("FindNext") && __real_FindNext(search, record);
}

void __wrap_EndFind(platform::FindHandle *search)
{
    --TheState().held.searches;
    __real_EndFind(search);
}

bool __wrap_CreateFolder(const WideChar *path)
{
    return !Enter("CreateFolder") && __real_CreateFolder(path);
}

bool __wrap_RemoveFile(const WideChar *path)
{
    return !Enter("RemoveFile") && __real_RemoveFile(path);
}

void __wrap_SetThreadError(std::uint32_t error)
{
    Enter("SetThreadError", std::to_string(error));
    __real_SetThreadError(error);
}

platform::Stream *__wrap_OpenStream(const WideChar *path, platform::StreamMode mode)
{
    platform::Stream *stream = Enter("OpenStream") ? nullptr : __real_OpenStream(path, mode);
    TheState().held.streams += stream != nullptr ? 1 : 0;
    return stream;
}

std::uint32_t __wrap_ReadStream(platform::Stream *stream, void *bytes, std::uint32_t length)
{
    return Enter("ReadStream") ? 0 : __real_ReadStream(stream, bytes, length);
}

std::uint32_t __wrap_WriteStream(platform::Stream *stream, const void *bytes, std::uint32_t length)
{
    return Enter("WriteStream", std::to_string(length))
               ? 0
               : __real_WriteStream(stream, bytes, std::min(length, TheState().writeLimit));
}

bool __wrap_CloseStream(platform::Stream *stream)
{
    const bool fails = Enter("CloseStream");
    --TheState().held.streams;
    return __real_CloseStream(stream) && !fails;
}

} // extern "C"
