// What a doctor has found out, point by point.
#pragma once

#include "diagnostics/judge.h"
#include "report.h"

#include <string>
#include <vector>

namespace client {

class Diagnosis {
public:
    // Takes over findings; the same rule again is counted.
    void Add(const diagnostics::Findings &findings);
    void Add(const diagnostics::Rule &rule, const std::string &evidence) { Add({{&rule, evidence}}); }

    // A point was looked at. shown: the bytes or numbers that show it to be right.
    void LookedAt(diagnostics::Topic topic, const std::string &shown);

    [[nodiscard]] bool Has(const diagnostics::Rule &rule) const;
    [[nodiscard]] bool HasErrors() const;
    // An error in a point other than the segments, where each try may see another thing.
    [[nodiscard]] bool HasErrorsBesideSegments() const;

    // Shows each point with what was found.
    void Show(Report *report) const;

private:
    struct Seen {
        diagnostics::Finding finding;
        int times = 1;
    };
    struct Look {
        diagnostics::Topic topic;
        std::string shown;
    };

    void ShowFindings(diagnostics::Topic topic, Report *report, nlohmann::ordered_json *json) const;
    [[nodiscard]] std::string Result(diagnostics::Topic topic) const;

    std::vector<Seen> seen_;
    std::vector<Look> looks_;
};

} // namespace client
