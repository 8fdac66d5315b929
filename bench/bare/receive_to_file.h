// A download without a library: connect, send, recv(1024) and fwrite.
#pragma once

#include <cstdint>
#include <string>

namespace pavonix::bench {

// Stores the body of `size` bytes that the loopback server sends for that id.
void ReceiveToFile(int port, std::size_t size, const std::string &path);

} // namespace pavonix::bench
