// The library's view of an observed reply.
#pragma once

#include "diagnostics/exchange.h"
#include "http/reply_facts.h"

namespace diagnostics {

using pavonix::NumberIn;

// Refers to the exchange, which must outlive it.
class DeviceReading : public pavonix::ReplyFacts {
public:
    explicit DeviceReading(const Exchange &exchange)
        : ReplyFacts(std::string_view(exchange.reply).substr(0, exchange.firstBytes))
    {
    }
};

} // namespace diagnostics
