// The output of a command: lines for people, or one JSON object.
#pragma once

#include "diagnostics/exchange_view.h"
#include "exit_code.h"

#include <nlohmann/json.hpp>

#include <string>

namespace client {

class Report {
public:
    Report(const std::string &command, bool asJson) : asJson_(asJson) { json["command"] = command; }

    // A line on standard output, and one on standard error; neither with JSON.
    void Print(const std::string &line) const;
    void PrintError(const std::string &line) const;

    // The findings of a call's exchange, on standard error and into the JSON object.
    // The sentence of the cause was printed before. After a call that did what it
    // should, errors are warnings.
    void AddFindings(const diagnostics::Exchange &exchange, const diagnostics::Findings &findings,
                     const diagnostics::Finding *cause);
    void AddWarnings(const diagnostics::Exchange &exchange, const diagnostics::Findings &findings);

    // Writes the JSON object. Returns `code`, or kLocalFailure if standard output
    // cannot be written.
    [[nodiscard]] ExitCode End(ExitCode code);

    nlohmann::ordered_json json;

private:
    void Add(diagnostics::FindingView finding, bool printSentence);

    bool asJson_;
};

[[nodiscard]] nlohmann::ordered_json ToJson(const diagnostics::FindingView &finding);

} // namespace client
