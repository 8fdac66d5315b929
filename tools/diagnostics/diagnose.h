// Says what is wrong with an exchange. Nothing here opens a socket or a file.
#pragma once

#include "diagnostics/exchange.h"
#include "diagnostics/rule.h"

#include <string_view>
#include <vector>

namespace diagnostics {

using Findings = std::vector<Finding>;

// The URL as it is given to a call, a download's without its query.
[[nodiscard]] Findings DiagnoseUrl(std::string_view url, Call call);

// The request, if it was seen, and the reply, in the order of topics; the first
// error among them explains why a call failed.
[[nodiscard]] Findings Diagnose(const Exchange &exchange);

// The parts of Diagnose.
[[nodiscard]] Findings DiagnoseRequest(const Exchange &exchange);
[[nodiscard]] Findings DiagnoseHead(const Exchange &exchange);     // first bytes, head, segments, status
[[nodiscard]] Findings DiagnoseDownload(const Exchange &exchange); // length, coding, body; of a reply with status 200
[[nodiscard]] Findings DiagnoseVerdict(const Exchange &exchange);  // of a purchase's reply

// The first error; null when there is none.
[[nodiscard]] const Finding *FirstError(const Findings &findings);

} // namespace diagnostics
