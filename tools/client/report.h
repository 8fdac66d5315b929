// The output of a command: lines of text, or one JSON object.
#pragma once

#include "diagnostics/exchange_view.h"
#include "exit_code.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <memory>
#include <string>

namespace client {

class Report {
public:
    Report(const std::string &command, bool asJson);
    ~Report();
    Report(const Report &) = delete;
    Report &operator=(const Report &) = delete;

    // A line on standard output or on standard error; not with --json.
    void Print(const std::string &line) const;
    void PrintError(const std::string &line) const;

    // Members of the JSON object.
    void SetText(const char *name, std::string_view value);
    void SetNumber(const char *name, std::int64_t value);
    void SetFlag(const char *name, bool value);
    nlohmann::ordered_json &json() { return *json_; }

    // Adds the findings of a call's exchange, on standard error and to the JSON object.
    // The sentence of `cause` is not printed again. AddWarnings is for a call that
    // succeeded: it reports errors as warnings.
    void AddFindings(const diagnostics::Exchange &exchange, const diagnostics::Findings &findings,
                     const diagnostics::Finding *cause);
    void AddWarnings(const diagnostics::Exchange &exchange, const diagnostics::Findings &findings);

    // Prints the JSON object. Returns `code`, or kLocalFailure if standard output
    // cannot be written.
    [[nodiscard]] ExitCode End(ExitCode code);

private:
    void Add(diagnostics::FindingView finding, bool printSentence);

    bool asJson_;
    std::unique_ptr<nlohmann::ordered_json> json_; // its header takes seconds to compile
};

[[nodiscard]] nlohmann::ordered_json ToJson(const diagnostics::FindingView &finding);

} // namespace client
