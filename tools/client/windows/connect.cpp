#include "windows/connect.h"

#include <algorithm>

namespace client {

bool WaitFor(SOCKET socket, Readiness readiness, const Deadline &deadline)
{
    using std::chrono::microseconds;
    fd_set wanted, failed; // a failed connect is told apart only here
    FD_ZERO(&wanted);
    FD_ZERO(&failed);
    FD_SET(socket, &wanted);
    FD_SET(socket, &failed);
    timeval left = {};
    if (deadline) {
        const auto time = std::chrono::ceil<microseconds>(*deadline - CallRecord::Clock::now());
        const auto count = std::max<microseconds::rep>(time.count(), 0);
        left = {static_cast<long>(count / 1000000), static_cast<long>(count % 1000000)};
    }
    const bool toRead = readiness == Readiness::kToRead;
    return select(0, toRead ? &wanted : nullptr, toRead ? nullptr : &wanted, &failed, deadline ? &left : nullptr) != 0;
}

int ConnectInTime(SOCKET socket, const sockaddr_in &peer, const Deadline &deadline)
{
    u_long on = 1;
    ioctlsocket(socket, FIONBIO, &on);
    int error = connect(socket, reinterpret_cast<const sockaddr *>(&peer), sizeof peer) == 0 ? 0 : WSAGetLastError();
    if (error == WSAEWOULDBLOCK) {
        error = WSAETIMEDOUT;
        int length = sizeof error;
        if (WaitFor(socket, Readiness::kToWrite, deadline)) {
            getsockopt(socket, SOL_SOCKET, SO_ERROR, reinterpret_cast<char *>(&error), &length);
        }
    }
    u_long off = 0;
    ioctlsocket(socket, FIONBIO, &off);
    return error;
}

} // namespace client
