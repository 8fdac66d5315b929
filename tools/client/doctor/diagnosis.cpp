#include "doctor/diagnosis.h"

#include <algorithm>

namespace client {

namespace {

using diagnostics::Rule;
using diagnostics::Topic;
using diagnostics::Weight;
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
    {Topic::kFormEnd, "line end behind the form"},
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

void Diagnosis::Add(const diagnostics::Findings &findings)
{
    for (const diagnostics::Finding &finding : findings) {
        const auto known = std::find_if(seen_.begin(), seen_.end(),
                                        [&](const Seen &seen) { return seen.finding.rule == finding.rule; });
        if (known == seen_.end()) {
            seen_.push_back({finding});
        } else {
            ++known->times;
        }
    }
}

void Diagnosis::LookedAt(Topic topic, const std::string &shown)
{
    const auto known =
        std::find_if(looks_.begin(), looks_.end(), [=](const Look &look) { return look.topic == topic; });
    if (known == looks_.end()) {
        looks_.push_back({topic, shown});
    } else {
        known->shown = shown;
    }
}

bool Diagnosis::Has(const Rule &rule) const
{
    return std::any_of(seen_.begin(), seen_.end(), [&](const Seen &seen) { return seen.finding.rule == &rule; });
}

bool Diagnosis::HasErrors() const
{
    return std::any_of(seen_.begin(), seen_.end(),
                       [](const Seen &seen) { return seen.finding.rule->weight == Weight::kError; });
}

bool Diagnosis::HasErrorsBesideSegments() const
{
    return std::any_of(seen_.begin(), seen_.end(), [](const Seen &seen) {
        const Rule &rule = *seen.finding.rule;
        return rule.weight == Weight::kError && rule.topic != Topic::kSegments && rule.topic != Topic::kHead;
    });
}

std::string Diagnosis::Result(Topic topic) const
{
    std::string result = "not tried";
    for (const Look &look : looks_) {
        result = look.topic == topic ? "ok" : result;
    }
    for (const Seen &seen : seen_) {
        if (seen.finding.rule->topic == topic && result != "error") {
            result = WeightWord(seen.finding.rule->weight);
        }
    }
    return result;
}

void Diagnosis::ShowFindings(Topic topic, Report *report, Json *json) const
{
    for (const Seen &seen : seen_) {
        const Rule &rule = *seen.finding.rule;
        if (rule.topic != topic) {
            continue;
        }
        Json finding = ToJson(seen.finding);
        finding["times"] = seen.times;
        json->push_back(std::move(finding));
        report->Print("  " + std::string(rule.name) + ": " + std::string(rule.sentence) +
                      (seen.times > 1 ? " (" + std::to_string(seen.times) + " times)" : ""));
        report->Print("    seen: " + seen.finding.evidence);
        report->Print("    the device: " + std::string(rule.device));
        for (const diagnostics::Remedy &remedy : rule.remedies) {
            report->Print("    " + std::string(remedy.server) + ": " + std::string(remedy.advice));
        }
    }
}

void Diagnosis::Show(Report *report) const
{
    Json &points = report->json["points"] = Json::array();
    for (const Point &point : kPoints) {
        const std::string result = Result(point.topic);
        const auto look =
            std::find_if(looks_.begin(), looks_.end(), [&](const Look &each) { return each.topic == point.topic; });
        const std::string shown = look == looks_.end() ? "" : look->shown;
        report->Print(Padded(point.title, kTitleWidth) + Padded(result, 10) + shown);
        Json json = {{"point", point.title}, {"result", result}, {"shown", shown}, {"findings", Json::array()}};
        ShowFindings(point.topic, report, &json["findings"]);
        points.push_back(std::move(json));
    }
}

} // namespace client
