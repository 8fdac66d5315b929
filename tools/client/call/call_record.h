// What happened on the network during a call of the library. The library returns one
// number; the record shows the reason for it.
#pragma once

#include "diagnostics/exchange.h"
#include "diagnostics/diagnose.h"
#include "progress_line.h"

#include <chrono>
#include <optional>
#include <string>

namespace client {

struct CallRecord {
    using Clock = std::chrono::steady_clock;

    explicit CallRecord(diagnostics::Call call) { exchange.call = call; }

    std::optional<Clock::time_point> deadline; // of every wait
    ProgressLine *progress = nullptr;          // shows how much was received
    bool readsOn = true;                       // receives what the library leaves unread

    std::string host;      // that was looked up; empty if the call ended before
    int nameError = 0;     // for NameRule
    std::string address;   // with its port
    int connectError = 0;  // for ConnectRule
    int sendError = 0;     // a number of the system
    bool timedOut = false; // the deadline passed
    int socket = -1;       // the library's
    Clock::time_point sentAt;
    diagnostics::Exchange exchange;
    std::uint64_t received = 0; // bytes that the library read

    [[nodiscard]] const Clock::time_point *deadlineOrNull() const { return deadline ? &*deadline : nullptr; }
    // Appends to the kept part of the reply; bytes beyond its limit are counted.
    void Keep(const char *bytes, std::size_t count);
    // Includes the rules that the URL breaks.
    [[nodiscard]] diagnostics::Findings Diagnose(const std::string &url) const;
};

// Records the library's use of the network (call/recorder.cpp) for as long as it exists.
// Only one can exist at a time.
class Recording {
public:
    explicit Recording(CallRecord *record);
    ~Recording();
    Recording(const Recording &) = delete;
    Recording &operator=(const Recording &) = delete;

    // Null if nothing is being recorded.
    static CallRecord *Current();
};

} // namespace client
