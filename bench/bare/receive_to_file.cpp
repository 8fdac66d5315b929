#include "bare/receive_to_file.h"

#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace pavonix::bench {

namespace {

int Connect(int port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0 || connect(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0) {
        std::abort(); // the benchmark cannot run
    }
    return fd;
}

} // namespace

void ReceiveToFile(int port, std::size_t size, const std::string &path)
{
    const int fd = Connect(port);
    const std::string request = "GET /shop?id=" + std::to_string(size) + " HTTP/1.1\r\n\r\n";
    send(fd, request.data(), request.size(), MSG_NOSIGNAL);
    char piece[1024 + 1];
    const ssize_t first = recv(fd, piece, sizeof piece - 1, 0);
    piece[first > 0 ? first : 0] = 0;
    const char *body = std::strstr(piece, "\r\n\r\n");
    std::FILE *file = std::fopen(path.c_str(), "wbe");
    if (body != nullptr && file != nullptr) {
        std::size_t written = static_cast<std::size_t>(piece + first - (body + 4));
        std::fwrite(body + 4, 1, written, file);
        while (written < size) {
            const ssize_t count = recv(fd, piece, 1024, 0);
            if (count <= 0) {
                break;
            }
            std::fwrite(piece, 1, static_cast<std::size_t>(count), file);
            written += static_cast<std::size_t>(count);
        }
    }
    if (file != nullptr) {
        std::fclose(file);
    }
    close(fd);
}

} // namespace pavonix::bench
