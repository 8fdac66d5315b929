// The last exchanges, as the window shows them.
#pragma once

#include "diagnostics/exchange.h"
#include "token/time_text.h"

#include <cstdint>
#include <deque>
#include <string>

namespace shop {

struct SeenExchange {
    std::uint64_t number = 0; // from 1, given by the log
    token::WallTime at;
    std::string peer;
    std::string fault; // empty for none
    std::string asked; // method and target; empty when no request was understood
    unsigned status = 0;
    std::string code; // "X-Error-Code" and "X-Error-Message" of the reply
    std::string message;
    diagnostics::Exchange exchange;
};

// Keeps so many exchanges, and so many bytes of each, whatever comes.
class ExchangeLog {
public:
    static constexpr std::size_t kKept = 50;
    static constexpr std::size_t kKeptBytes = std::size_t{16} * 1024;

    void Add(SeenExchange seen);

    // From the oldest to the newest.
    const std::deque<SeenExchange> &all() const { return exchanges_; }
    std::uint64_t newest() const { return newest_; }

private:
    std::deque<SeenExchange> exchanges_;
    std::uint64_t newest_ = 0;
};

} // namespace shop
