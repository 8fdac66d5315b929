// The client's addresses and the system's.
#pragma once

#include "wire/socket.h"

#include <winsock2.h>

#include <cstring>

namespace client {

[[nodiscard]] inline Address AddressOf(const sockaddr_in &system)
{
    Address address;
    std::memcpy(address.ip.data(), &system.sin_addr, address.ip.size());
    address.port = ntohs(system.sin_port);
    return address;
}

[[nodiscard]] inline sockaddr_in SystemAddressOf(const Address &address)
{
    sockaddr_in system = {};
    system.sin_family = AF_INET;
    system.sin_port = htons(address.port);
    std::memcpy(&system.sin_addr, address.ip.data(), address.ip.size());
    return system;
}

} // namespace client
