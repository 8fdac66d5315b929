// One request and its reply over a plain socket, without the library.
#pragma once

#include "diagnostics/exchange.h"
#include "diagnostics/diagnose.h"
#include "wire/socket.h"

#include <chrono>
#include <string>

namespace client {

// Looks a host up as the library does. Returns a finding and leaves *address
// without one when there is no IPv4 address.
[[nodiscard]] diagnostics::Findings LookUp(const std::string &host, int port, Address *address);

// Returns a finding and leaves *socket alone when nobody takes the connection.
[[nodiscard]] diagnostics::Findings Connect(const Address &address, std::chrono::milliseconds patience, Socket *socket);

struct PlainExchange {
    diagnostics::Findings noConnection; // why nothing could be asked
    diagnostics::Exchange exchange;
    bool sawFirstSegment = false; // see ReplyWatch
};

// Never takes longer than `patience` to connect, and as long for the exchange. What
// comes after the announced body is waited for a moment longer if `toTheEnd`.
[[nodiscard]] PlainExchange Ask(const Address &address, const std::string &request, diagnostics::Call call,
                                std::chrono::milliseconds patience, bool toTheEnd = true);

} // namespace client
