// The doctor's findings, point by point.
#pragma once

#include "diagnostics/diagnose.h"
#include "report.h"

#include <string>
#include <vector>

namespace client {

class Diagnosis {
public:
    // Adds findings; the same rule again is counted.
    void Add(const diagnostics::Findings &findings) { Add(findings, false); }
    void Add(const diagnostics::Rule &rule, const std::string &evidence) { Add({{&rule, evidence}}); }
    // The same for one of the downloads, which are counted, too.
    void AddDownload(const diagnostics::Findings &findings);

    // A point was looked at. shown: the bytes or numbers that show it to be right.
    void LookedAt(diagnostics::Topic topic, const std::string &shown);
    // How the server names itself: chooses the fixes.
    void SetSoftware(const std::string &software) { software_ = software; }

    [[nodiscard]] bool HasErrors() const;
    // An error in a point other than the segments, where each try may differ.
    [[nodiscard]] bool HasErrorsBesideSegments() const;
    int downloads() const { return downloads_; }

    // Shows each point with its findings; without the points that have none if quiet.
    void Show(Report *report, bool quiet) const;

private:
    struct Seen {
        diagnostics::Finding finding;
        bool inDownloads;
        int times = 1;
    };
    struct Look {
        diagnostics::Topic topic;
        std::string shown;
    };

    void Add(const diagnostics::Findings &findings, bool inDownloads);
    [[nodiscard]] nlohmann::ordered_json FindingsOf(diagnostics::Topic topic, std::string *text) const;
    [[nodiscard]] std::string Count(const Seen &seen) const;
    [[nodiscard]] std::string Result(diagnostics::Topic topic) const;

    std::vector<Seen> seen_;
    std::vector<Look> looks_;
    std::string software_;
    int downloads_ = 0;
};

} // namespace client
