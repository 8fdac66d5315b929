// The platform's functions that the trace wraps: the linker gives them the names
// __real_NAME and directs the library's calls to __wrap_NAME.
#pragma once

#include "platform/files.h"
#include "platform/sockets.h"

namespace pavonix::platform {

extern "C" {

int __real_StartWinsock(std::uint16_t version, std::uint16_t *granted);
int __real_CleanupWinsock();
int __real_CloseSocket(Socket socket);
const HostEntry *__real_ResolveHost(const char *name);
int __real_ConnectSocket(Socket socket, const SocketAddress *address, int addressLength);
int __real_SendSocket(Socket socket, const char *bytes, int length);
int __real_ReceiveSocket(Socket socket, char *bytes, int length);

FindHandle *__real_FindFirst(const WideChar *path, FindRecord *record);
bool __real_CreateFolder(const WideChar *path);
bool __real_RemoveFile(const WideChar *path);
Stream *__real_OpenStream(const WideChar *path, StreamMode mode);
std::uint32_t __real_ReadStream(Stream *stream, void *bytes, std::uint32_t length);
std::uint32_t __real_WriteStream(Stream *stream, const void *bytes, std::uint32_t length);
bool __real_CloseStream(Stream *stream);

} // extern "C"

} // namespace pavonix::platform

namespace pavonix::trace {

using namespace platform;

} // namespace pavonix::trace
