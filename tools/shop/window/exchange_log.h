// The last exchanges, as the window shows them.
#pragma once

#include "diagnostics/exchange.h"
#include "token/time_text.h"

#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

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

// Keeps so many exchanges, and so many bytes of each. Used by all threads.
class ExchangeLog {
public:
    static constexpr std::size_t kKept = 50;
    static constexpr std::size_t kKeptBytes = std::size_t{16} * 1024;

    void Add(SeenExchange seen);

    // Those with a number above that, from the oldest to the newest.
    [[nodiscard]] std::vector<SeenExchange> Newer(std::uint64_t number) const;
    [[nodiscard]] std::uint64_t newest() const;

private:
    mutable std::mutex mutex_;
    std::deque<SeenExchange> exchanges_;
    std::uint64_t newest_ = 0;
};

} // namespace shop
