// An exchange and its findings for output: escaped and truncated, the same in the shop's
// page and in the client.
#pragma once

#include "diagnostics/diagnose.h"

#include <string>
#include <vector>

namespace diagnostics {

// All texts are printable ASCII.
struct FindingView {
    std::string severity; // "error" or "warning"
    std::string rule;
    std::string sentence;
    std::string seen;
    std::string device;
    std::vector<std::string> fixes;
};

struct MessageView {
    std::vector<std::string> head; // the first lines, including their line ends
    std::string body;              // the beginning
    std::uint64_t bodySize = 0;    // of the whole body
};

struct ExchangeView {
    MessageView request;
    MessageView reply;
    std::vector<FindingView> findings;
};

// software: see ServerSoftware.
[[nodiscard]] FindingView ViewOf(const Finding &finding, std::string_view software);
[[nodiscard]] ExchangeView ViewOf(const Exchange &exchange, const Findings &findings);

// Each line begins with `indent`.
[[nodiscard]] std::string AsText(const FindingView &finding, const std::string &indent);
[[nodiscard]] std::string AsText(const ExchangeView &view);

// "error" or "warning".
[[nodiscard]] const char *SeverityWord(Severity severity);

} // namespace diagnostics
