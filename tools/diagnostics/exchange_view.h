// An exchange and its findings as people and programs read them: escaped, cut, and
// the same in the shop's page and in the client.
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
    std::vector<std::string> head; // its first lines, with their line ends
    std::string body;              // its beginning
    std::uint64_t bodySize = 0;    // of the whole body
};

struct ExchangeView {
    MessageView request;
    MessageView reply;
    std::vector<FindingView> findings;
};

// software: how the server names itself, see ServerSoftware.
[[nodiscard]] FindingView ViewOf(const Finding &finding, std::string_view software);
[[nodiscard]] ExchangeView ViewOf(const Exchange &exchange, const Findings &findings);

// The finding in lines that begin with `indent`.
[[nodiscard]] std::string AsText(const FindingView &finding, const std::string &indent);
[[nodiscard]] std::string AsText(const ExchangeView &view);

// "error" or "warning".
[[nodiscard]] const char *SeverityWord(Severity severity);

} // namespace diagnostics
