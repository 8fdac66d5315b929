#include "report.h"

#include "diagnostics/head_lines.h"

#include <nlohmann/json.hpp>

#include <iostream>

namespace client {

using Json = nlohmann::ordered_json;

Report::Report(const std::string &command, bool asJson) : asJson_(asJson), json_(std::make_unique<Json>())
{
    SetText("command", command);
}

Report::~Report() = default;

void Report::SetText(const char *name, std::string_view value)
{
    (*json_)[name] = value;
}

void Report::SetNumber(const char *name, std::int64_t value)
{
    (*json_)[name] = value;
}

void Report::SetFlag(const char *name, bool value)
{
    (*json_)[name] = value;
}

void Report::Print(const std::string &line) const
{
    if (!asJson_) {
        std::cout << line << '\n';
    }
}

void Report::PrintError(const std::string &line) const
{
    if (!asJson_) {
        std::cerr << line << '\n';
    }
}

void Report::AddFindings(const diagnostics::Exchange &exchange, const diagnostics::Findings &findings,
                         const diagnostics::Finding *cause)
{
    json()["findings"] = Json::array();
    const std::string software = diagnostics::ServerSoftware(exchange.reply);
    for (const diagnostics::Finding &finding : findings) {
        Add(diagnostics::ViewOf(finding, software), &finding != cause);
    }
}

void Report::AddWarnings(const diagnostics::Exchange &exchange, const diagnostics::Findings &findings)
{
    json()["findings"] = Json::array();
    const std::string software = diagnostics::ServerSoftware(exchange.reply);
    for (const diagnostics::Finding &finding : findings) {
        diagnostics::FindingView view = diagnostics::ViewOf(finding, software);
        view.severity = diagnostics::SeverityWord(diagnostics::Severity::kWarning);
        Add(std::move(view), true);
    }
}

void Report::Add(diagnostics::FindingView finding, bool printSentence)
{
    if (printSentence) {
        PrintError(finding.severity + ": " + finding.sentence);
    }
    PrintError("  seen: " + finding.seen);
    json()["findings"].push_back(ToJson(finding));
}

ExitCode Report::End(ExitCode code)
{
    SetNumber("exit_code", static_cast<int>(code));
    if (asJson_) {
        std::cout << json_->dump(2, ' ', true, Json::error_handler_t::replace) << '\n';
    }
    std::cout.flush();
    if (!std::cout) {
        std::cerr << "pavonix: standard output cannot be written\n";
        return ExitCode::kLocalFailure;
    }
    return code;
}

Json ToJson(const diagnostics::FindingView &finding)
{
    return {{"rule", finding.rule}, {"severity", finding.severity}, {"sentence", finding.sentence},
            {"seen", finding.seen}, {"device", finding.device},     {"fixes", finding.fixes}};
}

} // namespace client
