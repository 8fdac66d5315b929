// What every call to the shop needs: where the shop is and who asks.
#pragma once

#include "call/call_record.h"
#include "exit_code.h"
#include "report.h"
#include "shop_library.h"
#include "wide_text.h"

#include <CLI/App.hpp>

#include <functional>
#include <optional>
#include <string>

namespace client {

// A call that was made.
struct Outcome {
    int status = PAVONIX_FAILED; // what the library answered
    CallRecord record;
    diagnostics::Findings findings;
};

struct ShopCall {
    std::string library;
    bool trace = false;
    std::string profile;
    std::string url;
    std::optional<int> port;
    std::optional<double> seconds; // time-out
    bool json = false;

    // Declares the options of a call. command is "list", "good" or "buy".
    void AddOptions(CLI::App &command);

    // Writes a warning for a profile that cannot be read: the library does not
    // mind, it sends the request without an identity.
    [[nodiscard]] WideText WideProfile() const;

    // Loads the library, makes one call and watches it.
    [[nodiscard]] Outcome Make(diagnostics::Call kind, const std::function<int(const ShopLibrary &)> &call) const;
    // The URL with the command's name in place of "{}".
    [[nodiscard]] std::string Url() const;
    // --port, or the port that stands in the URL, or 80.
    [[nodiscard]] int Port() const;

private:
    std::string command_;
};

// The port that stands in a URL, or 80.
[[nodiscard]] int PortIn(const std::string &url);

// Says why a call brought no status 200, and answers the exit code for it.
[[nodiscard]] ExitCode ExplainFailure(const Outcome &outcome, Report *report);

} // namespace client
