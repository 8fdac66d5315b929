#include "scripted_server.h"

#include "caller_process.h"

#include <arpa/inet.h>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace pavonix::e2e {

namespace {

using std::chrono::milliseconds;

sockaddr *Generic(sockaddr_in *address)
{
    return reinterpret_cast<sockaddr *>(address);
}

int PortOf(int socket, int (*which)(int, sockaddr *, socklen_t *))
{
    sockaddr_in address = {};
    socklen_t length = sizeof address;
    which(socket, Generic(&address), &length);
    return ntohs(address.sin_port);
}

// Unread bytes at the client's end of a loopback connection, from the kernel's list of
// sockets; -1 if that end is closed.
long UnreadAtClient(int clientPort, int serverPort)
{
    constexpr long kEstablished = 1, kCloseWait = 8;
    std::ifstream sockets("/proc/net/tcp");
    for (std::string line; std::getline(sockets, line);) {
        std::istringstream words(line);
        std::string slot, local, remote, state, queues;
        words >> slot >> local >> remote >> state >> queues;
        const auto port = [](const std::string &address) { return std::strtol(address.c_str() + 9, nullptr, 16); };
        if (local.size() != 13 || port(local) != clientPort || port(remote) != serverPort) {
            continue;
        }
        const long code = std::strtol(state.c_str(), nullptr, 16);
        return code == kEstablished || code == kCloseWait ? std::strtol(queues.c_str() + 9, nullptr, 16) : -1;
    }
    return -1;
}

// Waits until the client has received all sent bytes, has closed or times out, so that
// later bytes cannot merge with earlier ones.
void WaitUntilTaken(int client)
{
    const int clientPort = PortOf(client, getpeername), serverPort = PortOf(client, getsockname);
    for (int i = 0; i < 4000 || WaitsForever(); ++i) {
        int unsent = 0;
        ioctl(client, SIOCOUTQ, &unsent);
        const long unread = UnreadAtClient(clientPort, serverPort);
        if (unread < 0 || (unread == 0 && unsent == 0)) {
            return;
        }
        std::this_thread::sleep_for(milliseconds(1));
    }
}

// A GET ends with a blank line; after a form's body follows one CR LF.
bool IsComplete(const std::string &request)
{
    const std::size_t blank = request.find("\r\n\r\n");
    if (blank == std::string::npos) {
        return false;
    }
    const std::size_t length = request.find("Content-Length: ");
    const std::size_t body = length < blank ? std::strtoul(request.c_str() + length + 16, nullptr, 10) + 2 : 0;
    return request.size() >= blank + 4 + body;
}

} // namespace

ScriptedServer::ScriptedServer(ServerScript script) : script_(std::move(script))
{
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (pipe2(stop_, O_CLOEXEC) != 0 || bind(listener_, Generic(&address), sizeof address) != 0) {
        std::abort();
    }
    port_ = PortOf(listener_, getsockname);
    if (script_.manner != Server::kRefuses) { // a bound port without a listener refuses connections
        listen(listener_, 1);
        thread_ = std::thread(&ScriptedServer::Run, this);
    }
}

ScriptedServer::~ScriptedServer()
{
    Finish();
    close(stop_[0]);
    close(listener_);
}

Exchange ScriptedServer::Finish()
{
    if (stop_[1] >= 0) {
        close(stop_[1]);
        stop_[1] = -1;
        if (thread_.joinable()) {
            thread_.join();
        }
    }
    return seen_;
}

// Returns true if a client is in the queue, also if it connected just before Finish.
bool ScriptedServer::WaitForClient()
{
    pollfd events[] = {{listener_, POLLIN, 0}, {stop_[0], POLLIN, 0}};
    poll(events, 2, -1);
    return poll(events, 1, 0) == 1;
}

void ScriptedServer::Run()
{
    if (!WaitForClient()) {
        return;
    }
    seen_.connected = true;
    if (script_.manner == Server::kNeverAccepts) {
        std::this_thread::sleep_for(milliseconds(50));
        shutdown(listener_, SHUT_RDWR); // resets the queued connection
        return;
    }
    const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    const int on = 1;
    setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    const timeval patience = {WaitsForever() ? 0 : 5, 0}; // 0: no limit
    setsockopt(client, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    setsockopt(client, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    ReadRequest(client);
    SendPieces(client);
    if (script_.ending == Ending::kResets) {
        WaitUntilTaken(client);
        const linger atOnce = {1, 0};
        setsockopt(client, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    } else {
        AwaitClose(client);
    }
    close(client);
}

void ScriptedServer::ReadRequest(int client)
{
    char bytes[4096];
    while (!IsComplete(seen_.received)) {
        const ssize_t count = recv(client, bytes, sizeof bytes, 0);
        if (count <= 0) {
            return;
        }
        seen_.received.append(bytes, static_cast<std::size_t>(count));
    }
}

void ScriptedServer::SendPieces(int client)
{
    for (const std::string &piece : script_.pieces) {
        WaitUntilTaken(client);
        std::size_t sent = 0;
        while (sent < piece.size()) {
            const ssize_t count = send(client, piece.data() + sent, piece.size() - sent, MSG_NOSIGNAL);
            if (count <= 0) {
                return; // the client may close early
            }
            sent += static_cast<std::size_t>(count);
        }
    }
}

void ScriptedServer::AwaitClose(int client)
{
    if (script_.ending == Ending::kCloses) {
        shutdown(client, SHUT_WR);
    }
    char bytes[4096];
    ssize_t count;
    while ((count = recv(client, bytes, sizeof bytes, 0)) > 0) {
        seen_.received.append(bytes, static_cast<std::size_t>(count));
    }
    seen_.clientClosed = count == 0 || errno == ECONNRESET;
}

} // namespace pavonix::e2e
