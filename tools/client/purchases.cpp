#include "purchases.h"

#include "diagnostics/printable.h"
#include "wide_text.h"

#include <climits>
#include <memory>

namespace client {

namespace {

// The library writes texts in full length: an overlong message continues into the
// timestamp, so only the end of the record limits it.
std::string TextAt(const BuyGoodRoomyResult &result, const PavonixChar *text)
{
    const auto *end = reinterpret_cast<const PavonixChar *>(&result + 1);
    std::basic_string_view<PavonixChar> shown(text, static_cast<std::size_t>(end - text));
    shown = shown.substr(0, shown.find(PavonixChar(0)));
    shown.remove_prefix(std::min(shown.find_first_not_of(PavonixChar(' ')), shown.size())); // the one after the colon
    return diagnostics::PrintableText(ToUtf8(shown));
}

// A value that the library never writes.
constexpr int kUntouched = INT_MIN;

void ShowVerdict(const BuyGoodRoomyResult &result, Report *report)
{
    const std::string message = TextAt(result, result.message);
    report->PrintError("error code: " + std::to_string(result.errorCode) +
                       (result.errorCode == 0 ? " (none readable)" : ""));
    report->PrintError("message: " + (message.empty() ? "(none)" : message));
    report->SetNumber("error_code", result.errorCode);
    report->SetText("message", message);
    if (result.errorCode == 906) {
        const std::string timestamp = TextAt(result, result.serverTimestamp);
        report->PrintError("server timestamp: " + timestamp);
        report->PrintError("The clock of this device is wrong; set it and buy again.");
        report->SetText("server_timestamp", timestamp);
    }
}

// The server may have failed between the sale and its reply. A 3xx or 4xx is a refusal.
bool MayBeSold(const Outcome &outcome)
{
    return !outcome.record.exchange.request.empty() && (outcome.status < 300 || outcome.status >= 500);
}

constexpr const char *kMaybeSold = "The shop may have sold the good. To find out, buy it again without --force: code "
                                   "908 (already owned) means that it "
                                   "was sold.";

// After a 0 the record holds whatever was received.
void ShowPartialRecord(const BuyGoodRoomyResult &result, Report *report)
{
    const bool untouched = result.errorCode == kUntouched;
    const std::string text = untouched ? "" : TextAt(result, result.message);
    report->PrintError(untouched      ? "The application's record is unchanged."
                       : text.empty() ? "The application gets code 0 and no message."
                                      : "The application gets code 0 and the message \"" + text + "\".");
    report->SetFlag("record_touched", !untouched);
    report->SetText("message", text);
}

ExitCode Explain(const Outcome &outcome, const BuyGoodRoomyResult &result, const BuyGoodRequest &request,
                 Report *report)
{
    if (outcome.status == PAVONIX_OK) {
        report->Print("bought (200): type " + std::to_string(request.type) + ", id " + std::to_string(request.id));
        report->AddWarnings(outcome.record.exchange, outcome.findings);
        return ExitCode::kDone;
    }
    const ExitCode code = ExplainFailure(outcome, report);
    if (outcome.status == PAVONIX_FAILED) {
        ShowPartialRecord(result, report);
    } else {
        ShowVerdict(result, report);
    }
    if (MayBeSold(outcome)) {
        report->PrintError(kMaybeSold);
        report->SetFlag("may_be_sold", true);
    }
    return code;
}

} // namespace

ExitCode Buy(const Purchase &purchase)
{
    const ShopCall &call = purchase.call;
    const BuyGoodRequest request{0, 0, purchase.type, purchase.id, purchase.force ? 1 : 0};
    const auto result = std::make_unique<BuyGoodRoomyResult>();
    result->errorCode = kUntouched;
    const WideText profile = call.WideProfile();
    const WideText url = ToWide(call.Url());
    const Outcome outcome = call.Make(diagnostics::Call::kPurchase, [&](const ShopLibrary &library) {
        return library.getBuyGood(profile.c_str(), &request, reinterpret_cast<BuyGoodResult *>(result.get()),
                                  url.c_str(), call.Port());
    });
    Report report(call.command, call.json);
    report.SetNumber("status", outcome.status);
    return report.End(Explain(outcome, *result, request, &report));
}

} // namespace client
