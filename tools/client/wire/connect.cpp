#include "wire/connect.h"

#include <fcntl.h>
#include <sys/socket.h>

#include <cerrno>

namespace client {

int ConnectInTime(int socket, const sockaddr_in &peer, const Deadline *deadline)
{
    const int flags = fcntl(socket, F_GETFL);
    fcntl(socket, F_SETFL, flags | O_NONBLOCK);
    int error = connect(socket, reinterpret_cast<const sockaddr *>(&peer), sizeof peer) == 0 ? 0 : errno;
    if (error == EINPROGRESS) {
        error = ETIMEDOUT;
        socklen_t length = sizeof error;
        if (WaitToWrite(socket, deadline)) {
            getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &length);
        }
    }
    fcntl(socket, F_SETFL, flags);
    return error == ECONNRESET ? 0 : error; // it stood, and the server has reset it already: sending will tell
}

} // namespace client
