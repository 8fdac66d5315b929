// What every call to the shop needs: where the shop is and who asks.
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

// A call that was made.
struct Outcome {
    int status = PAVONIX_FAILED; // the library's result
    CallRecord record;
    diagnostics::Findings findings;

    // The file existed and nothing was sent. A server can reply with status 001, too.
    [[nodiscard]] bool WasKept() const { return status == PAVONIX_KEPT && record.host.empty(); }
};

struct ShopCall {
    std::string command; // "list", "good" or "buy"
    bool trace = false;
    std::string profile;
    std::string url;
    std::optional<int> port;
    std::optional<double> seconds; // time-out
    bool json = false;

    // Writes a warning for a profile that cannot be read: the library does not
    // mind, it sends the request without an identity.
    [[nodiscard]] WideText WideProfile() const;

    // Makes one call and watches it.
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
