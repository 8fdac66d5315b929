#include "answering_server.h"

#include <arpa/inet.h>
#include <cstdlib>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>
#include <utility>

namespace pavonix::ce {

namespace {

void Answer(int client, const std::string &reply)
{
    const timeval patience = {2, 0}; // a client that neither sends nor closes is not waited for
    setsockopt(client, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    char bytes[4096];
    if (recv(client, bytes, sizeof bytes, 0) > 0) {
        send(client, reply.data(), reply.size(), MSG_NOSIGNAL);
        shutdown(client, SHUT_WR);
        while (recv(client, bytes, sizeof bytes, 0) > 0) {
        }
    }
    close(client);
}

} // namespace

AnsweringServer::AnsweringServer(std::string reply)
    : reply_(std::move(reply)), listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    if (bind(listener_, generic, length) != 0 || listen(listener_, 8) != 0 ||
        getsockname(listener_, generic, &length) != 0) {
        std::abort();
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread(&AnsweringServer::Serve, this);
}

AnsweringServer::~AnsweringServer()
{
    shutdown(listener_, SHUT_RDWR); // ends the accept
    thread_.join();
    close(listener_);
}

void AnsweringServer::Serve()
{
    for (int client; (client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
        Answer(client, reply_);
    }
}

} // namespace pavonix::ce
