// The C library's own functions, behind the ones of that name that this program
// puts in front of them.
#pragma once

#include <netdb.h>
#include <sys/socket.h>

namespace client::real {

hostent *GetHostByName(const char *name);
int Connect(int socket, const sockaddr *address, socklen_t length);
ssize_t Send(int socket, const void *bytes, size_t count, int flags);
ssize_t Receive(int socket, void *buffer, size_t room, int flags);
int Close(int file);

} // namespace client::real
