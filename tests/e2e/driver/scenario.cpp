#include "scenario.h"

#include <cstdint>

namespace pavonix::e2e {

std::string Head(const std::vector<std::string> &lines)
{
    std::string head;
    for (const std::string &line : lines) {
        head += line + "\r\n";
    }
    return head + "\r\n";
}

std::string Announce(std::size_t announced, const std::string &body)
{
    return Head({"HTTP/1.1 200 OK", "Content-Length: " + std::to_string(announced)}) + body;
}

std::string Bytes(std::size_t count)
{
    std::string bytes(count, '\0');
    std::uint32_t state = 1;
    for (char &byte : bytes) {
        state = state * 1664525u + 1013904223u;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

std::string FirstReception(const std::string &reply)
{
    std::string area = reply.substr(0, 1024);
    area.resize(1024, '\0');
    return area.substr(area.find("\r\n\r\n") + 4);
}

} // namespace pavonix::e2e
