#include "report.h"

#include <iostream>

namespace client {

using Json = nlohmann::ordered_json;

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

void Report::AddFindings(const diagnostics::Findings &findings, const diagnostics::Finding *cause)
{
    Json &list = json["findings"] = Json::array();
    for (const diagnostics::Finding &finding : findings) {
        list.push_back(ToJson(finding));
        if (&finding != cause) {
            PrintError(std::string(WeightWord(finding.rule->weight)) + ": " + std::string(finding.rule->sentence));
        }
        PrintError("  seen: " + finding.evidence);
    }
}

ExitCode Report::End(ExitCode code)
{
    json["exit_code"] = static_cast<int>(code);
    if (asJson_) {
        std::cout << json.dump(2, ' ', true, Json::error_handler_t::replace) << '\n';
    }
    std::cout.flush();
    if (!std::cout) {
        std::cerr << "pavonix: standard output cannot be written\n";
        return ExitCode::kLocalFailure;
    }
    return code;
}

Json ToJson(const diagnostics::Finding &finding)
{
    Json json = {{"rule", finding.rule->name},
                 {"weight", WeightWord(finding.rule->weight)},
                 {"sentence", finding.rule->sentence},
                 {"seen", finding.evidence},
                 {"device", finding.rule->device}};
    Json &remedies = json["remedies"] = Json::object();
    for (const diagnostics::Remedy &remedy : finding.rule->remedies) {
        remedies[std::string(remedy.server)] = remedy.advice;
    }
    return json;
}

const char *WeightWord(diagnostics::Weight weight)
{
    return weight == diagnostics::Weight::kError ? "error" : "warning";
}

} // namespace client
