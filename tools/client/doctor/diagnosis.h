// The results of an examination, point by point.
#pragma once

#include "diagnostics/diagnose.h"
#include "report.h"

#include <string>
#include <vector>

namespace client {

class Diagnosis {
public:
    // Adds findings; a rule that is broken repeatedly is counted.
    void Add(const diagnostics::Findings &findings) { Add(findings, false); }
    void Add(const diagnostics::Rule &rule, const std::string &evidence) { Add({{&rule, evidence}}); }
    // Adds the findings of one download, and counts the downloads.
    void AddDownload(const diagnostics::Findings &findings);

    // Marks a point as examined. shown: the bytes or numbers that were seen.
    void SetExamined(diagnostics::Topic topic, const std::string &shown);
    // The server's software selects the fixes.
    void SetSoftware(const std::string &software) { software_ = software; }

    [[nodiscard]] bool HasErrors() const;
    // Whether there is an error in another point than segments and head, which vary from
    // try to try.
    [[nodiscard]] bool HasLastingErrors() const;
    int downloads() const { return downloads_; }

    // Prints each point with its findings; if quiet, only points with findings.
    void Show(Report *report, bool quiet) const;

private:
    struct Seen {
        diagnostics::Finding finding;
        bool inDownloads;
        int times = 1;
    };
    struct Examined {
        diagnostics::Topic topic;
        std::string shown;
    };

    void Add(const diagnostics::Findings &findings, bool inDownloads);
    [[nodiscard]] nlohmann::ordered_json FindingsOf(diagnostics::Topic topic, std::string *text) const;
    [[nodiscard]] std::string Count(const Seen &seen) const;
    [[nodiscard]] std::string Result(diagnostics::Topic topic) const;

    std::vector<Seen> seen_;
    std::vector<Examined> examined_;
    std::string software_;
    int downloads_ = 0;
};

} // namespace client
