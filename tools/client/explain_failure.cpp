// Reports why a call did not return 200.
#include "diagnostics/rules.h"
#include "diagnostics/device_reading.h"
#include "diagnostics/printable.h"
#include "shop_call.h"

namespace client {

namespace {

using diagnostics::Finding;
using diagnostics::Topic;

ExitCode CodeOf(const Finding &cause)
{
    switch (cause.rule->topic) {
    case Topic::kUrl:
        return ExitCode::kUnusableUrl;
    case Topic::kName:
    case Topic::kConnection:
        return cause.rule == &diagnostics::RuleNamed("send-failed") ? ExitCode::kNoReply : ExitCode::kNoConnection;
    default:
        return ExitCode::kNoReply;
    }
}

ExitCode ExplainNoStatus(const Outcome &outcome, Report *report)
{
    const Finding *cause = diagnostics::FirstError(outcome.findings);
    if (cause == nullptr) {
        report->PrintError("no reply status (0): no fault was observed; the library may have run out of memory");
        return ExitCode::kNoReply;
    }
    report->PrintError("no reply status (0): " + std::string(cause->rule->sentence));
    report->SetText("cause", cause->rule->name);
    report->AddFindings(outcome.record.exchange, outcome.findings, cause);
    return CodeOf(*cause);
}

void ShowBody(const Outcome &outcome, Report *report)
{
    const diagnostics::DeviceReading device(outcome.record.exchange);
    const std::string &reply = outcome.record.exchange.reply;
    if (device.headIsWhole() && reply.size() > device.headLength()) {
        const std::string body = diagnostics::Printable(reply.substr(device.headLength()), 400);
        report->PrintError("body: " + body);
        report->SetText("body", body);
    }
}

// The library discards code, message and body of a refused download.
void ShowReason(const Outcome &outcome, Report *report)
{
    const diagnostics::DeviceReading device(outcome.record.exchange);
    if (const auto code = device.Verdict("X-Error-Code")) {
        report->PrintError("error code:" + diagnostics::Printable(*code));
        report->SetNumber("error_code", diagnostics::NumberIn(*code));
    }
    if (const auto message = device.Verdict("X-Error-Message")) {
        report->PrintError("message:" + diagnostics::Printable(*message, diagnostics::kFirstReception));
        report->SetText("message", diagnostics::Printable(*message, diagnostics::kFirstReception));
    }
    ShowBody(outcome, report);
}

ExitCode ExplainStatus(const Outcome &outcome, Report *report)
{
    const auto isAboutStatus = [](const Finding &finding) { return finding.rule->topic == Topic::kStatus; };
    const auto cause = std::find_if(outcome.findings.begin(), outcome.findings.end(), isAboutStatus);
    const bool known = cause != outcome.findings.end();
    report->PrintError("status " + std::to_string(outcome.status) + ": " +
                       (known ? std::string(cause->rule->sentence) : "The server refuses the purchase."));
    if (known) {
        report->SetText("cause", cause->rule->name);
    }
    report->AddFindings(outcome.record.exchange, outcome.findings, known ? &*cause : nullptr);
    if (outcome.record.exchange.call == diagnostics::Call::kDownload) {
        ShowReason(outcome, report);
    }
    return ExitCode::kRefused;
}

} // namespace

ExitCode ExplainFailure(const Outcome &outcome, Report *report)
{
    const ExitCode code =
        outcome.status == PAVONIX_FAILED ? ExplainNoStatus(outcome, report) : ExplainStatus(outcome, report);
    return outcome.record.timedOut ? ExitCode::kTimeOut : code;
}

} // namespace client
