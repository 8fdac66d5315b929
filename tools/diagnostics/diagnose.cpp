#include "diagnostics/diagnose.h"

#include "diagnostics/device_reading.h"

#include <algorithm>

namespace diagnostics {

Findings Diagnose(const Exchange &exchange)
{
    Findings findings = DiagnoseRequest(exchange);
    const auto append = [&](Findings more) { std::move(more.begin(), more.end(), std::back_inserter(findings)); };
    append(DiagnoseHead(exchange));
    if (DeviceReading(exchange).headIsWhole()) {
        append(exchange.call == Call::kPurchase ? DiagnoseVerdict(exchange) : DiagnoseDownload(exchange));
    }
    return findings;
}

const Finding *FirstError(const Findings &findings)
{
    const auto found = std::find_if(findings.begin(), findings.end(),
                                    [](const Finding &finding) { return finding.rule->severity == Severity::kError; });
    return found == findings.end() ? nullptr : &*found;
}

} // namespace diagnostics
