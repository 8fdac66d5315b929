#include "wire/segments.h"

#include <linux/sockios.h>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <utility>

namespace client {

namespace {

using Time = std::pair<std::int64_t, std::int64_t>; // seconds and nanoseconds

// When the last of the first `count` unread bytes arrived.
std::optional<Time> TimeOf(int socket, std::size_t count)
{
    char bytes[2048];
    alignas(cmsghdr) char control[256];
    iovec room = {bytes, std::min(count, sizeof bytes)};
    msghdr message = {};
    message.msg_iov = &room;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    if (recvmsg(socket, &message, MSG_PEEK | MSG_DONTWAIT) <= 0) {
        return std::nullopt;
    }
    for (cmsghdr *each = CMSG_FIRSTHDR(&message); each != nullptr; each = CMSG_NXTHDR(&message, each)) {
        if (each->cmsg_level == SOL_SOCKET && each->cmsg_type == SCM_TIMESTAMPNS) {
            timespec time;
            std::memcpy(&time, CMSG_DATA(each), sizeof time);
            return Time(time.tv_sec, time.tv_nsec);
        }
    }
    return std::nullopt;
}

unsigned SegmentsOn(int socket)
{
    tcp_info info = {};
    socklen_t length = sizeof info;
    return getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &length) == 0 ? info.tcpi_data_segs_in : 0;
}

} // namespace

Arrived ArrivedOn(int socket)
{
    // a segment may arrive between the two system calls
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

ArrivalTimes::ArrivalTimes() : holder_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))
{
    WatchSegments(holder_.get());
}

void WatchSegments(int socket)
{
    const int on = 1, off = 0;
    setsockopt(socket, SOL_SOCKET, SO_TIMESTAMPNS, &on, sizeof on);
    // The system may merge acknowledged bytes with the next segment, which would hide the
    // end of the first one.
    setsockopt(socket, IPPROTO_TCP, TCP_QUICKACK, &off, sizeof off);
}

std::optional<std::size_t> FirstSegment(int socket, std::size_t most)
{
    const std::optional<Time> first = TimeOf(socket, 1);
    if (!first) {
        return std::nullopt;
    }
    std::size_t in = 1; // bytes known to be in the first segment
    for (std::size_t beyond = most + 1; beyond - in > 1;) {
        const std::size_t middle = in + (beyond - in) / 2;
        if (TimeOf(socket, middle) == first) {
            in = middle;
        } else {
            beyond = middle;
        }
    }
    return in;
}

} // namespace client
