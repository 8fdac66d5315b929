// Passes one connection on between a device and its server, and observes it.
#pragma once

#include "wire/plain_exchange.h"
#include "wire/reply_watch.h"

#include <string>

namespace client {

class Relay {
public:
    // idle: the longest silence of both sides.
    Relay(Socket device, const Address &server, std::chrono::milliseconds idle);

    // Returns when the connection is over, at the latest `idle` after its last byte.
    // Bytes are passed on as they arrive: the first segment of the reply is sent on as
    // a segment of its own if it could be told apart from the next.
    void Run();

    const diagnostics::Exchange &exchange() const { return seen_.exchange; }
    bool sawFirstSegment() const { return seen_.sawFirstSegment; }
    // Includes why the server could not be reached. The client's faults are not the
    // server's: no request, or gone before the whole reply was there.
    [[nodiscard]] diagnostics::Findings Diagnose() const;

private:
    enum class Side { kNone, kDevice, kServer };

    [[nodiscard]] Side WaitForOne();
    [[nodiscard]] bool CarryRequest();
    [[nodiscard]] bool CarryReply(ReplyWatch *watch);
    void ListenOn(ReplyWatch *watch);
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
