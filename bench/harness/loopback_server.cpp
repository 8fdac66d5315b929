#include "harness/loopback_server.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstdlib>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace pavonix::bench {

namespace {

constexpr std::size_t kBlockSize = 1 << 20;

// The request, its form included; empty when the client has gone.
std::string ReadRequest(int client)
{
    std::string request;
    char piece[4096];
    while (true) {
        const ssize_t count = recv(client, piece, sizeof piece, 0);
        if (count <= 0) {
            return {};
        }
        request.append(piece, static_cast<std::size_t>(count));
        const std::size_t end = request.find("\r\n\r\n");
        const std::size_t length = request.find("Content-Length: ");
        const std::size_t form = length == std::string::npos ? 0 : std::strtoul(&request[length + 16], nullptr, 10);
        if (end != std::string::npos && request.size() >= end + 4 + form) {
            return request;
        }
    }
}

bool SendAll(int client, const char *bytes, std::size_t count)
{
    while (count > 0) {
        const ssize_t sent = send(client, bytes, count, MSG_NOSIGNAL);
        if (sent < 0) {
            return false;
        }
        bytes += sent;
        count -= static_cast<std::size_t>(sent);
    }
    return true;
}

} // namespace

LoopbackServer::LoopbackServer() : block_(kBlockSize, 'x')
{
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto *plain = reinterpret_cast<sockaddr *>(&address);
    if (listener_ < 0 || bind(listener_, plain, length) != 0 || listen(listener_, 16) != 0 ||
        getsockname(listener_, plain, &length) != 0) {
        std::abort();
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { Run(); });
}

LoopbackServer::~LoopbackServer()
{
    shutdown(listener_, SHUT_RDWR); // ends the accept
    thread_.join();
    close(listener_);
}

void LoopbackServer::Run()
{
    for (int client = accept(listener_, nullptr, nullptr); client >= 0; client = accept(listener_, nullptr, nullptr)) {
        Reply(client);
        char rest[256];
        while (recv(client, rest, sizeof rest, 0) > 0) {
        }
        close(client);
    }
}

void LoopbackServer::Reply(int client)
{
    const std::string request = ReadRequest(client);
    std::this_thread::sleep_for(std::chrono::microseconds(pause_));
    if (request.compare(0, 5, "POST ") == 0) {
        const std::string reply = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok";
        SendAll(client, reply.data(), reply.size());
        return;
    }
    const std::size_t last = request.rfind('=', request.find(" HTTP/"));
    if (last != std::string::npos) {
        SendBody(client, std::strtoul(&request[last + 1], nullptr, 10));
    }
}

bool LoopbackServer::SendBody(int client, std::size_t count)
{
    const std::string head = "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(count) + "\r\n\r\n";
    std::copy(head.begin(), head.end(), block_.begin());
    const std::size_t first = std::min(count, block_.size() - head.size());
    bool sent = SendAll(client, block_.data(), head.size() + first);
    for (count -= first; sent && count > 0;) {
        const std::size_t next = std::min(count, block_.size());
        sent = SendAll(client, block_.data(), next);
        count -= next;
    }
    return sent;
}

} // namespace pavonix::bench
