// One request and its reply over a plain socket.
#pragma once

#include "diagnostics/exchange.h"
#include "diagnostics/diagnose.h"
#include "wire/socket.h"

#include <chrono>
#include <string>

namespace client {

// Looks up a host as the library does. Returns a finding if it has no IPv4 address.
[[nodiscard]] diagnostics::Findings LookUp(const std::string &host, int port, Address *address);

// Returns a finding, and leaves *socket unchanged, if the connection fails.
[[nodiscard]] diagnostics::Findings Connect(const Address &address, std::chrono::milliseconds patience, Socket *socket);

struct PlainExchange {
    diagnostics::Findings noConnection; // why no request could be sent
    diagnostics::Exchange exchange;
    bool sawFirstSegment = false; // see ReplyWatch
};

// patience: limit for the connection, and again for the exchange. toTheEnd: also wait a
// moment for bytes after the announced body.
[[nodiscard]] PlainExchange Ask(const Address &address, const std::string &request, diagnostics::Call call,
                                std::chrono::milliseconds patience, bool toTheEnd = true);

} // namespace client
