// What a command tells: lines for people, or one JSON object.
#pragma once

#include "exit_code.h"
#include "diagnostics/judge.h"

#include <nlohmann/json.hpp>

#include <string>

namespace client {

class Report {
public:
    Report(const std::string &command, bool asJson) : asJson_(asJson) { json["command"] = command; }

    // A line on standard output, and one on standard error; neither with JSON.
    void Print(const std::string &line) const;
    void PrintError(const std::string &line) const;

    // Findings with what shows them, on standard error, and into the JSON object.
    // The sentence of the one that is known as the cause was said before.
    void AddFindings(const diagnostics::Findings &findings, const diagnostics::Finding *cause = nullptr);

    // Writes the JSON object. Answers `code`, or kLocalFailure when standard output
    // did not take what was written.
    [[nodiscard]] ExitCode End(ExitCode code);

    nlohmann::ordered_json json;

private:
    bool asJson_;
};

[[nodiscard]] nlohmann::ordered_json ToJson(const diagnostics::Finding &finding);

// "error" or "warning".
[[nodiscard]] const char *WeightWord(diagnostics::Weight weight);

} // namespace client
