// Carries one connection between a device and its server, and looks on.
#pragma once

#include "wire/plain_exchange.h"
#include "wire/reply_watch.h"

#include <string>

namespace client {

class Relay {
public:
    // idle: how long nothing may come from either side.
    Relay(Socket device, const Address &server, std::chrono::milliseconds idle);

    // Returns when the connection is over, at the latest `idle` after its last byte.
    // Bytes are passed on as they come: the first segment of the reply goes out as a
    // segment of its own when it was told apart from the next.
    void Run();

    // What was seen; findings only when the server could not be reached.
    const PlainExchange &seen() const { return seen_; }

private:
    enum class Side { kNone, kDevice, kServer };

    [[nodiscard]] Side WaitForOne();
    [[nodiscard]] bool CarryRequest();
    [[nodiscard]] bool CarryReply(ReplyWatch *watch);
    void ListenOn(ReplyWatch *watch);
    void EndLikeTheServer();

    Socket device_;
    Socket server_;
    Address address_;
    std::chrono::milliseconds idle_;
    bool replyHasBegun_ = false;
    bool deviceIsDone_ = false;
    PlainExchange seen_;
};

} // namespace client
