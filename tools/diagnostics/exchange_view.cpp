#include "diagnostics/exchange_view.h"

#include "diagnostics/head_lines.h"
#include "diagnostics/printable.h"

namespace diagnostics {

namespace {

constexpr std::size_t kMostOfAHead = 4096;
constexpr std::size_t kMostOfABody = 400;
constexpr std::size_t kMostOfALine = 1100;

// The general fix comes first, the front last.
std::vector<std::string> FixesFor(const Rule &rule, std::string_view software)
{
    if (rule.fix == nullptr) {
        return {};
    }
    std::vector<std::string> fixes = {std::string(rule.fix->general)};
    for (const Fix::Setting &setting : rule.fix->settings) {
        if (ContainsInAnyCase(software, setting.software)) {
            fixes.push_back(std::string(setting.software) + ": " + std::string(setting.advice));
        }
    }
    if (rule.fix->frontHelps) {
        fixes.emplace_back("or put the front of docs/operating.md before the server");
    }
    return fixes;
}

MessageView ViewOfMessage(std::string_view message, std::uint64_t beyond)
{
    const std::size_t end = message.find("\r\n\r\n");
    const std::size_t headLength = end == std::string_view::npos ? message.size() : end + 4;
    MessageView view;
    view.body = Printable(message.substr(headLength), kMostOfABody);
    view.bodySize = message.size() - headLength + beyond;
    for (std::string_view head = message.substr(0, std::min(headLength, kMostOfAHead)); !head.empty();) {
        const std::size_t length = std::min(head.find('\n'), head.size() - 1) + 1;
        view.head.push_back(Printable(head.substr(0, length), kMostOfALine));
        head.remove_prefix(length);
    }
    return view;
}

std::string AsText(const MessageView &message, const std::string &sign)
{
    std::string text;
    for (const std::string &line : message.head) {
        text += sign + line + '\n';
    }
    return message.bodySize == 0 ? text
                                 : text + sign + message.body + "  (" + std::to_string(message.bodySize) + " bytes)\n";
}

} // namespace

FindingView ViewOf(const Finding &finding, std::string_view software)
{
    const Rule &rule = *finding.rule;
    return {SeverityWord(rule.severity), std::string(rule.name),  std::string(rule.sentence), finding.evidence,
            std::string(rule.device),    FixesFor(rule, software)};
}

ExchangeView ViewOf(const Exchange &exchange, const Findings &findings)
{
    ExchangeView view = {ViewOfMessage(exchange.request, 0), ViewOfMessage(exchange.reply, exchange.beyond), {}};
    const std::string software = ServerSoftware(exchange.reply);
    for (const Finding &finding : findings) {
        view.findings.push_back(ViewOf(finding, software));
    }
    return view;
}

std::string AsText(const FindingView &finding, const std::string &indent)
{
    std::string text = indent + finding.severity + " " + finding.rule + ": " + finding.sentence + "\n" + indent +
                       "  seen: " + finding.seen + "\n" + indent + "  device: " + finding.device + "\n";
    for (const std::string &fix : finding.fixes) {
        text += indent + "  fix: " + fix + "\n";
    }
    return text;
}

std::string AsText(const ExchangeView &view)
{
    std::string text = AsText(view.request, "  > ") + AsText(view.reply, "  < ");
    for (const FindingView &finding : view.findings) {
        text += AsText(finding, "  ");
    }
    return view.findings.empty() ? text + "  no fault found\n" : text;
}

const char *SeverityWord(Severity severity)
{
    return severity == Severity::kError ? "error" : "warning";
}

} // namespace diagnostics
