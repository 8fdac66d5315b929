// What happened on the network while the library made its call. The library
// returns one number; this is how the client knows the reason for it.
#pragma once

#include "diagnostics/exchange.h"
#include "diagnostics/diagnose.h"

#include <chrono>
#include <optional>
#include <string>

namespace client {

struct CallRecord {
    using Clock = std::chrono::steady_clock;

    explicit CallRecord(diagnostics::Call call) { exchange.call = call; }

    std::optional<Clock::time_point> deadline; // nothing is waited for beyond it
    bool showProgress = false;                 // on standard error, after a second
    bool listensOn = true;                     // to what the library leaves unread

    std::string host;      // that was looked up; empty when the call did not come so far
    int nameError = 0;     // for NameRule
    std::string address;   // with its port
    int connectError = 0;  // for ConnectRule
    int sendError = 0;     // the system's
    bool timedOut = false; // the deadline came
    int socket = -1;       // the library's
    Clock::time_point sentAt;
    diagnostics::Exchange exchange;
    std::uint64_t received = 0; // bytes that the library read

    [[nodiscard]] const Clock::time_point *deadlineOrNull() const { return deadline ? &*deadline : nullptr; }
    // Takes over bytes of the reply, as many as are kept.
    void Keep(const char *bytes, std::size_t count);
    // What is wrong with the call, URL included.
    [[nodiscard]] diagnostics::Findings Diagnose(const std::string &url) const;
};

// While it lives, the library's use of the network is noted in the record
// (call/recorder.cpp). One at a time.
class Recording {
public:
    explicit Recording(CallRecord *record);
    ~Recording();
    Recording(const Recording &) = delete;
    Recording &operator=(const Recording &) = delete;

    // The record being made; null when there is none.
    static CallRecord *Current();
};

} // namespace client
