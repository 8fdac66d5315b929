#include "wire/socket.h"

namespace client {

std::string Dotted(const Address &address)
{
    const auto part = [&](std::size_t i) { return std::to_string(address.ip[i]); };
    return part(0) + '.' + part(1) + '.' + part(2) + '.' + part(3);
}

bool WaitToRead(int socket, const Deadline *deadline)
{
    return WaitToReadOne({socket}, deadline) >= 0;
}

bool SendAll(int socket, std::string_view bytes, const Deadline &deadline)
{
    while (!bytes.empty() && WaitToWrite(socket, &deadline)) {
        const std::ptrdiff_t sent = SendSome(socket, bytes);
        if (sent < 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return bytes.empty();
}

} // namespace client
