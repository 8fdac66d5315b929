#include "wire/socket.h"

#include "wire/name_fault.h"

#include <cstring>

namespace client {

Address MakeAddress(std::uint16_t port)
{
    constexpr std::uint16_t kIpv4 = 2; // AF_INET
    return {kIpv4, {static_cast<std::uint8_t>(port >> 8), static_cast<std::uint8_t>(port)}, {}, {}};
}

std::uint16_t PortOf(const Address &address)
{
    return static_cast<std::uint16_t>(address.port[0] << 8 | address.port[1]);
}

std::string Dotted(const Address &address)
{
    const auto part = [&](std::size_t i) { return std::to_string(address.address[i]); };
    return part(0) + '.' + part(1) + '.' + part(2) + '.' + part(3);
}

int LookUpIpv4(const std::string &host, Address *address)
{
    using namespace pavonix::platform;
    constexpr std::uint16_t kWinsock22 = 0x0202;
    std::uint16_t granted = 0;
    StartWinsock(kWinsock22, &granted); // the library may have called WSACleanup once too often
    const HostEntry *found = ResolveHost(host.c_str());
    if (found == nullptr) {
        return LastLookUpError();
    }
    std::memcpy(address->address, found->firstAddress, sizeof address->address);
    return 0;
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
