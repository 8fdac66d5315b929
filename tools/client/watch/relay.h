// Relays one connection between a device and its server, and records it.
#pragma once

#include "wire/plain_exchange.h"
#include "wire/reply_watch.h"

#include <string>

namespace client {

class Relay {
public:
    // idle: how long both sides may be silent.
    Relay(Socket device, const Address &server, std::chrono::milliseconds idle);

    // Returns when the connection ends, at most `idle` after its last byte. Passes bytes on
    // as they arrive, and the first segment of the reply as a segment of its own if it
    // could be identified.
    void Run();

    const diagnostics::Exchange &exchange() const { return seen_.exchange; }
    bool sawFirstSegment() const { return seen_.sawFirstSegment; }
    // Faults of the client are reported as such: no request, or closed before the whole
    // reply had arrived.
    [[nodiscard]] diagnostics::Findings Diagnose() const;

private:
    enum class Side { kNone, kDevice, kServer };

    [[nodiscard]] Side WaitForOne();
    [[nodiscard]] bool CarryRequest();
    [[nodiscard]] bool CarryReply(ReplyWatch *watch);
    void ReadOn(ReplyWatch *watch);
    void EndLikeTheServer();

    Socket device_;
    Socket server_;
    Address address_{};
    std::chrono::milliseconds idle_;
    bool replyHasBegun_ = false;
    bool deviceIsDone_ = false;
    bool deviceLeftEarly_ = false;
    PlainExchange seen_;
};

} // namespace client
