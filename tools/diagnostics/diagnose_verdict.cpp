// A purchase's reply.
#include "diagnostics/device_reading.h"
#include "diagnostics/head_lines.h"
#include "diagnostics/diagnose.h"
#include "diagnostics/printable.h"
#include "diagnostics/rules.h"

#include <algorithm>

namespace diagnostics {

namespace {

constexpr std::string_view kCode = "X-Error-Code";
constexpr std::string_view kMessage = "X-Error-Message";
constexpr std::string_view kTimestamp = "X-Server-Timestamp";
constexpr int kClockIsOff = 906;
// of BuyGoodResult, without terminator and the space after the colon
constexpr std::size_t kLongestMessage = 254;
constexpr std::size_t kLongestTimestamp = 62;

// Whether it is of the form 2010-3-5 9:7:3 or 2010-3-5 9:7:3.042, also with a negative fraction.
bool IsTimeText(std::string_view text)
{
    std::string form; // with a 0 for each number
    for (const char letter : text) {
        const bool isDigit = letter >= '0' && letter <= '9';
        if (!isDigit || !form.ends_with('0')) {
            form += isDigit ? '0' : letter;
        }
    }
    return form == "0-0-0 0:0:0" || form == "0-0-0 0:0:0.0" || form == "0-0-0 0:0:0.-0";
}

class Verdict {
public:
    explicit Verdict(const Exchange &exchange)
        : exchange_(exchange), device_(exchange), lines_(ReadHeadLines(exchange.reply))
    {
    }

    Findings Diagnose();

private:
    void Add(const Rule &rule, const std::string &evidence) { findings_.push_back({&rule, evidence}); }
    std::string Text(std::string_view name) const;
    void DiagnoseSpelling(std::string_view name);
    void DiagnoseCode();
    void DiagnoseMessage();
    void DiagnoseTimestamp();

    const Exchange &exchange_;
    DeviceReading device_;
    std::vector<HeadLine> lines_;
    Findings findings_;
};

// A value without the space after the colon.
std::string Verdict::Text(std::string_view name) const
{
    const std::string_view value = device_.Verdict(name).value_or("");
    return std::string(value.substr(std::min(value.find_first_not_of(' '), value.size())));
}

void Verdict::DiagnoseSpelling(std::string_view name)
{
    const HeadLine *line = FindLine(lines_, name);
    if (line == nullptr) {
        return;
    }
    const std::string_view where = device_.LineOf(name).value_or("");
    if (where.empty()) {
        Add(RuleNamed("code-case"), Printable(line->whole));
    } else if (!where.starts_with(std::string(name) + ":")) {
        Add(RuleNamed("code-hidden"), Printable(where));
    }
}

void Verdict::DiagnoseCode()
{
    const HeadLine *line = FindLine(lines_, kCode);
    if (line == nullptr) {
        Add(RuleNamed("code-missing"), "no such line");
    } else if (const auto code = device_.Verdict(kCode); code && NumberIn(*code) == 0) {
        Add(RuleNamed("code-zero"), Printable(line->whole));
    }
}

void Verdict::DiagnoseMessage()
{
    const std::string message = Text(kMessage);
    const int code = NumberIn(device_.Verdict(kCode).value_or(""));
    if (message.size() > kLongestMessage) {
        Add(RuleNamed("message-too-long"), std::to_string(message.size()) + " characters: " + Printable(message, 40));
    }
    if (std::any_of(message.begin(), message.end(), [](char letter) { return (letter & 0x80) != 0; })) {
        Add(RuleNamed("message-not-ascii"), Printable(message));
    }
    if (code != 0 && FindLine(lines_, kMessage) == nullptr) {
        Add(RuleNamed("message-missing"), Printable(FindLine(lines_, kCode) ? FindLine(lines_, kCode)->whole : ""));
    }
}

void Verdict::DiagnoseTimestamp()
{
    const std::string time = Text(kTimestamp);
    if (FindLine(lines_, kTimestamp) == nullptr) {
        Add(RuleNamed("timestamp-missing"), "no such line");
    } else if (time.size() > kLongestTimestamp) {
        Add(RuleNamed("timestamp-too-long"), std::to_string(time.size()) + " characters: " + Printable(time, 40));
    } else if (device_.Verdict(kTimestamp) && !IsTimeText(time)) {
        Add(RuleNamed("timestamp-form"), Printable(time));
    }
}

Findings Verdict::Diagnose()
{
    if (device_.status() == 200) {
        if (const HeadLine *line = FindLine(lines_, kCode); line != nullptr && NumberIn(line->value) != 0) {
            Add(RuleNamed("sold-with-code"), Printable(line->whole));
        }
    } else if (device_.status() >= 400) {
        for (const std::string_view name : {kCode, kMessage, kTimestamp}) {
            DiagnoseSpelling(name);
        }
        DiagnoseCode();
        DiagnoseMessage();
        if (NumberIn(device_.Verdict(kCode).value_or("")) == kClockIsOff) {
            DiagnoseTimestamp();
        }
    }
    if (exchange_.end == End::kReset) {
        Add(RuleNamed("line-end-unread"),
            "reset after " + std::to_string(exchange_.reply.size()) + " bytes of the reply");
    }
    return std::move(findings_);
}

} // namespace

Findings DiagnoseVerdict(const Exchange &exchange)
{
    return Verdict(exchange).Diagnose();
}

} // namespace diagnostics
