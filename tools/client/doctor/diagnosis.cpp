#include "doctor/diagnosis.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace client {

namespace {

using diagnostics::Severity;
using diagnostics::Topic;
using Json = nlohmann::ordered_json;

struct Point {
    Topic topic;
    const char *title;
};

constexpr Point kPoints[] = {
    {Topic::kUrl, "URL"},
    {Topic::kName, "host name"},
    {Topic::kConnection, "connection"},
    {Topic::kFirstBytes, "first bytes"},
    {Topic::kHead, "head"},
    {Topic::kSegments, "segments"},
    {Topic::kStatus, "status"},
    {Topic::kLength, "length"},
    {Topic::kCoding, "coding"},
    {Topic::kBody, "body"},
    {Topic::kVerdict, "verdict"},
    {Topic::kToken, "token and clock"},
    {Topic::kFormEnd, "CR LF after the form"},
    {Topic::kReplay, "token used twice"},
    {Topic::kTime, "time"},
    {Topic::kLibrary, "through the library"},
};

constexpr std::size_t kTitleWidth = 26;

std::string Padded(std::string text, std::size_t width)
{
    text.resize(std::max(text.size(), width), ' ');
    return text;
}

} // namespace

void Diagnosis::Add(const diagnostics::Findings &findings, bool inDownloads)
{
    for (const diagnostics::Finding &finding : findings) {
        const auto known = std::find_if(seen_.begin(), seen_.end(), [&](const Seen &seen) {
            return seen.finding.rule == finding.rule && seen.inDownloads == inDownloads;
        });
        if (known == seen_.end()) {
            seen_.push_back({finding, inDownloads});
        } else {
            ++known->times;
        }
    }
}

void Diagnosis::AddDownload(const diagnostics::Findings &findings)
{
    ++downloads_;
    Add(findings, true);
}

void Diagnosis::SetExamined(Topic topic, const std::string &shown)
{
    const auto known =
        std::find_if(examined_.begin(), examined_.end(), [=](const Examined &each) { return each.topic == topic; });
    if (known == examined_.end()) {
        examined_.push_back({topic, shown});
    } else {
        known->shown = shown;
    }
}

bool Diagnosis::HasErrors() const
{
    return std::any_of(seen_.begin(), seen_.end(),
                       [](const Seen &seen) { return seen.finding.rule->severity == Severity::kError; });
}

bool Diagnosis::HasLastingErrors() const
{
    return std::any_of(seen_.begin(), seen_.end(), [](const Seen &seen) {
        const diagnostics::Rule &rule = *seen.finding.rule;
        return rule.severity == Severity::kError && rule.topic != Topic::kSegments && rule.topic != Topic::kHead;
    });
}

std::string Diagnosis::Result(Topic topic) const
{
    std::string result = "not tried";
    for (const Examined &each : examined_) {
        result = each.topic == topic ? "ok" : result;
    }
    for (const Seen &seen : seen_) {
        if (seen.finding.rule->topic == topic && result != "error") {
            result = diagnostics::SeverityWord(seen.finding.rule->severity);
        }
    }
    return result;
}

std::string Diagnosis::Count(const Seen &seen) const
{
    if (seen.inDownloads) {
        return " (in " + std::to_string(seen.times) + " of " + std::to_string(downloads_) + " downloads)";
    }
    return seen.times > 1 ? " (" + std::to_string(seen.times) + " times)" : "";
}

Json Diagnosis::FindingsOf(Topic topic, std::string *text) const
{
    Json list = Json::array();
    for (const Seen &seen : seen_) {
        if (seen.finding.rule->topic == topic) {
            diagnostics::FindingView view = diagnostics::ViewOf(seen.finding, software_);
            Json json = ToJson(view);
            json["times"] = seen.times;
            json["tries"] = seen.inDownloads ? downloads_ : seen.times;
            list.push_back(std::move(json));
            view.seen += Count(seen);
            *text += AsText(view, "  ");
        }
    }
    return list;
}

void Diagnosis::Show(Report *report, bool quiet) const
{
    Json &points = report->json()["points"] = Json::array();
    for (const Point &point : kPoints) {
        const std::string result = Result(point.topic);
        const auto look = std::find_if(examined_.begin(), examined_.end(),
                                       [&](const Examined &each) { return each.topic == point.topic; });
        const std::string shown = look == examined_.end() ? "" : look->shown;
        std::string text = Padded(point.title, kTitleWidth) + Padded(result, 10) + shown + '\n';
        Json findings = FindingsOf(point.topic, &text);
        if (!quiet || !findings.empty()) {
            report->Print(text.substr(0, text.size() - 1));
        }
        points.push_back(
            {{"point", point.title}, {"result", result}, {"shown", shown}, {"findings", std::move(findings)}});
    }
}

} // namespace client
