// Finds the rules that an exchange breaks. Opens no socket and no file.
#pragma once

#include "diagnostics/exchange.h"
#include "diagnostics/rule.h"

#include <string_view>
#include <vector>

namespace diagnostics {

using Findings = std::vector<Finding>;

// url: as passed to the call, without a download's query.
[[nodiscard]] Findings DiagnoseUrl(std::string_view url, Call call);

// Diagnoses the request, if observed, and the reply, in the order of topics. If the call
// failed, the first error is the reason.
[[nodiscard]] Findings Diagnose(const Exchange &exchange);

// The parts of Diagnose.
[[nodiscard]] Findings DiagnoseRequest(const Exchange &exchange);
[[nodiscard]] Findings DiagnoseHead(const Exchange &exchange);     // first bytes, head, segments, status
[[nodiscard]] Findings DiagnoseDownload(const Exchange &exchange); // length, coding, body; of a reply with status 200
[[nodiscard]] Findings DiagnoseVerdict(const Exchange &exchange);  // of a purchase's reply

// Null if there is none.
[[nodiscard]] const Finding *FirstError(const Findings &findings);

} // namespace diagnostics
