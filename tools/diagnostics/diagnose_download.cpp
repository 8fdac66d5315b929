// Length, coding and body of a download's reply.
#include "diagnostics/device_reading.h"
#include "diagnostics/head_lines.h"
#include "diagnostics/diagnose.h"
#include "diagnostics/printable.h"
#include "diagnostics/rules.h"
#include "diagnostics/xml_fault.h"

#include <algorithm>

namespace diagnostics {

namespace {

constexpr std::string_view kName = "Content-Length";

class Download {
public:
    explicit Download(const Exchange &exchange)
        : exchange_(exchange),
          device_(exchange),
          lines_(ReadHeadLines(exchange.reply)),
          body_(std::string_view(exchange.reply).substr(device_.headLength()))
    {
    }

    Findings Diagnose();

private:
    void Add(const Rule &rule, const std::string &evidence) { findings_.push_back({&rule, evidence}); }
    bool Coded();
    void DiagnoseLine(const HeadLine &line);
    void DiagnoseLength();
    void DiagnoseAgainstBody();
    void DiagnoseBody();

    const Exchange &exchange_;
    DeviceReading device_;
    std::vector<HeadLine> lines_;
    std::string_view body_;
    Findings findings_;
};

bool Download::Coded()
{
    const HeadLine *transfer = FindLine(lines_, "Transfer-Encoding");
    const HeadLine *content = FindLine(lines_, "Content-Encoding");
    const bool chunked = transfer != nullptr && !EqualsInAnyCase(transfer->value, "identity");
    if (chunked) {
        Add(RuleNamed("chunked"), Printable(transfer->whole) + "; the body begins with " + Printable(body_, 12));
    }
    const bool compressed = content != nullptr && !EqualsInAnyCase(content->value, "identity");
    if (compressed) {
        Add(RuleNamed("compressed"), Printable(content->whole) + "; the body begins with " + Printable(body_, 12));
    }
    return chunked || compressed;
}

// There is a line of that name; the device may not be able to read it.
void Download::DiagnoseLine(const HeadLine &line)
{
    const std::string_view where = device_.LineOf(kName).value_or("");
    if (line.name != kName && where.empty()) {
        Add(RuleNamed("length-case"), Printable(line.whole));
    } else if (!where.starts_with(std::string(kName) + ":")) {
        Add(RuleNamed("length-hidden"), Printable(where));
    } else if (line.value.empty() || line.value.find_first_not_of("0123456789") != std::string_view::npos ||
               device_.announced() == 0x7FFFFFFF) {
        Add(RuleNamed("length-no-number"), Printable(line.whole));
    } else if (device_.announced() == 0) {
        Add(RuleNamed("length-zero"), Printable(line.whole));
    } else {
        DiagnoseAgainstBody();
    }
}

void Download::DiagnoseLength()
{
    const HeadLine *line = FindLine(lines_, kName);
    if (line == nullptr) {
        const std::string_view where = device_.LineOf(kName).value_or("");
        Add(RuleNamed("length-missing"), where.empty() ? "no such line" : "the name is only in: " + Printable(where));
        return;
    }
    DiagnoseLine(*line);
    for (const HeadLine &other : lines_) {
        if (EqualsInAnyCase(other.name, kName) && other.value != line->value) {
            Add(RuleNamed("length-twice"), Printable(line->whole) + " and " + Printable(other.whole));
            return;
        }
    }
}

void Download::DiagnoseAgainstBody()
{
    const std::uint64_t came = body_.size() + exchange_.beyond;
    const std::string fact = std::to_string(device_.announced()) + " announced, " + std::to_string(came) + " arrived";
    if (came > device_.announced()) {
        Add(RuleNamed("length-too-small"), fact);
    } else if (came == device_.announced()) {
        return;
    } else if (exchange_.end == End::kReset) {
        Add(RuleNamed("body-reset"), fact);
    } else {
        Add(RuleNamed("length-too-large"), fact);
    }
}

void Download::DiagnoseBody()
{
    if (exchange_.beyond == 0 && FirstError(findings_) == nullptr) {
        if (const std::string fault = XmlFault(body_); !fault.empty()) {
            Add(RuleNamed("not-xml"), fault + "; it begins with " + Printable(body_, 40));
        }
    }
}

Findings Download::Diagnose()
{
    if (device_.status() == 200) {
        if (!Coded()) {
            DiagnoseLength();
        }
        DiagnoseBody();
    }
    return std::move(findings_);
}

} // namespace

Findings DiagnoseDownload(const Exchange &exchange)
{
    return Download(exchange).Diagnose();
}

} // namespace diagnostics
