// The system calls that the library makes, caught on their way. This program
// exports these names (tools/CMakeLists.txt), and a library that is loaded looks
// here before it looks in the C library. Unless a record is being made, and for
// every other socket, they pass on what they are given.
#include "linux/real_calls.h"
#include "linux/recorder.h"

#include <dlfcn.h>

using client::CallRecord;
using client::Recording;

namespace {

template <class Function>
Function *Next(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

// The record, if this is the socket that it is about.
CallRecord *RecordOf(int socket)
{
    CallRecord *record = Recording::Current();
    return record != nullptr && record->socket == socket ? record : nullptr;
}

} // namespace

namespace client::real {

hostent *GetHostByName(const char *name)
{
    static auto *const next = Next<hostent *(const char *)>("gethostbyname");
    return next(name);
}

int Connect(int socket, const sockaddr *address, socklen_t length)
{
    static auto *const next = Next<int(int, const sockaddr *, socklen_t)>("connect");
    return next(socket, address, length);
}

ssize_t Send(int socket, const void *bytes, size_t count, int flags)
{
    static auto *const next = Next<ssize_t(int, const void *, size_t, int)>("send");
    return next(socket, bytes, count, flags);
}

ssize_t Receive(int socket, void *buffer, size_t room, int flags)
{
    static auto *const next = Next<ssize_t(int, void *, size_t, int)>("recv");
    return next(socket, buffer, room, flags);
}

int Close(int file)
{
    static auto *const next = Next<int(int)>("close");
    return next(file);
}

} // namespace client::real

extern "C" {

hostent *gethostbyname(const char *name)
{
    CallRecord *record = Recording::Current();
    return record == nullptr ? client::real::GetHostByName(name) : client::NoteLookUp(record, name);
}

int connect(int socket, const sockaddr *address, socklen_t length)
{
    CallRecord *record = Recording::Current();
    if (record == nullptr || record->socket >= 0 || address->sa_family != AF_INET || length != sizeof(sockaddr_in)) {
        return client::real::Connect(socket, address, length);
    }
    return client::NoteConnect(record, socket, *reinterpret_cast<const sockaddr_in *>(address));
}

ssize_t send(int socket, const void *bytes, size_t count, int flags)
{
    CallRecord *record = RecordOf(socket);
    return record == nullptr ? client::real::Send(socket, bytes, count, flags)
                             : client::NoteSend(record, bytes, count, flags);
}

ssize_t recv(int socket, void *buffer, size_t room, int flags)
{
    CallRecord *record = RecordOf(socket);
    return record == nullptr ? client::real::Receive(socket, buffer, room, flags)
                             : client::NoteReceive(record, buffer, room, flags);
}

int close(int file)
{
    if (CallRecord *record = RecordOf(file); record != nullptr) {
        client::NoteClose(record);
    }
    return client::real::Close(file);
}
}
