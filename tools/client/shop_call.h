// A call to the shop: its common options, and its outcome.
#pragma once

#include "call/call_record.h"
#include "exit_code.h"
#include "report.h"
#include "shop_library.h"
#include "wide_text.h"

#include <functional>
#include <optional>
#include <string>

namespace client {

struct Outcome {
    int status = PAVONIX_FAILED; // the call's return value
    CallRecord record;
    diagnostics::Findings findings;

    // The file exists and nothing was sent. (A server can also reply with status 001.)
    [[nodiscard]] bool WasKept() const { return status == PAVONIX_KEPT && record.host.empty(); }
};

struct ShopCall {
    std::string command; // "list", "good" or "buy"
    bool trace = false;
    std::string profile;
    std::string url;
    std::optional<int> port;
    std::optional<double> seconds; // the time-out
    bool json = false;

    // Prints a warning if the profile cannot be read: the library then sends the request
    // without an identity.
    [[nodiscard]] WideText WideProfile() const;

    // Makes one call and records it.
    [[nodiscard]] Outcome Make(diagnostics::Call kind, const std::function<int(const ShopLibrary &)> &call) const;
    // The URL with the command's name in place of "{}".
    [[nodiscard]] std::string Url() const;
    // --port, or the port in the URL, or 80.
    [[nodiscard]] int Port() const;
};

// The port in a URL, or the default.
[[nodiscard]] int PortIn(const std::string &url, int defaultPort = 80);

// Prints why a call did not return 200, and returns the exit code for it.
[[nodiscard]] ExitCode ExplainFailure(const Outcome &outcome, Report *report);

} // namespace client
