#include "wire/segments.h"

#include <linux/sockios.h>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>

namespace client {

namespace {

int MillisecondsTo(const Deadline *deadline)
{
    using std::chrono::milliseconds;
    if (deadline == nullptr) {
        return -1;
    }
    const auto left = std::chrono::ceil<milliseconds>(*deadline - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp(left, milliseconds(0), milliseconds(1000 * 1000)).count());
}

unsigned SegmentsOn(int socket)
{
    tcp_info info = {};
    socklen_t length = sizeof info;
    return getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &length) == 0 ? info.tcpi_data_segs_in : 0;
}

bool Wait(int socket, short events, const Deadline *deadline)
{
    pollfd waiting = {socket, events, 0};
    int ready = 0;
    do {
        ready = poll(&waiting, 1, MillisecondsTo(deadline));
    } while (ready < 0 && errno == EINTR);
    return ready != 0;
}

} // namespace

Arrived ArrivedOn(int socket)
{
    // a segment may come between the two questions
    for (unsigned segments = SegmentsOn(socket);;) {
        int unread = 0;
        ioctl(socket, SIOCINQ, &unread);
        const unsigned now = SegmentsOn(socket);
        if (now == segments) {
            return {segments, static_cast<std::size_t>(unread)};
        }
        segments = now;
    }
}

bool WaitToRead(int socket, const Deadline *deadline)
{
    return Wait(socket, POLLIN, deadline);
}

bool WaitToWrite(int socket, const Deadline *deadline)
{
    return Wait(socket, POLLOUT, deadline);
}

} // namespace client
