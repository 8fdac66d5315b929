#include "service.h"

#include "execute.h"

#include <arpa/inet.h>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace pavonix::e2e {

namespace {

sockaddr_in Loopback(int port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

bool CanConnect(int port)
{
    const sockaddr_in address = Loopback(port);
    const int probe = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool connected = connect(probe, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    close(probe);
    return connected;
}

} // namespace

int FreePort()
{
    sockaddr_in address = Loopback(0);
    socklen_t length = sizeof address;
    const int probe = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool bound = bind(probe, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
                       getsockname(probe, reinterpret_cast<sockaddr *>(&address), &length) == 0;
    close(probe);
    return bound ? ntohs(address.sin_port) : 0;
}

Service::Service(const std::vector<std::string> &command, int port, const std::string &logFile)
    : pid_(fork()), port_(port)
{
    if (pid_ != 0) {
        return;
    }
    const int log = open(logFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(log, STDOUT_FILENO);
    dup2(log, STDERR_FILENO);
    Execute(command);
}

Service::~Service()
{
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
}

bool Service::IsUp() const
{
    for (int i = 0; i < 500; ++i) {
        siginfo_t ended = {};
        if (waitid(P_PID, static_cast<id_t>(pid_), &ended, WEXITED | WNOHANG | WNOWAIT) != 0 || ended.si_pid != 0) {
            return false;
        }
        if (CanConnect(port_)) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

} // namespace pavonix::e2e
