#include "watch/exchange_view.h"

#include "diagnostics/printable.h"
#include "report.h"

#include <ostream>

namespace client {

namespace {

constexpr std::size_t kMostOfAHead = 2048;
constexpr std::size_t kMostOfABody = 200;
constexpr std::size_t kMostOfALine = 300;

void ShowLines(std::ostream &out, const char *sign, std::string_view head)
{
    head = head.substr(0, kMostOfAHead);
    while (!head.empty()) {
        const std::size_t length = std::min(head.find('\n'), head.size() - 1) + 1;
        out << "  " << sign << ' ' << diagnostics::Printable(head.substr(0, length), kMostOfALine) << '\n';
        head.remove_prefix(length);
    }
}

void ShowMessage(std::ostream &out, const char *sign, std::string_view message)
{
    const std::size_t end = message.find("\r\n\r\n");
    const std::size_t headLength = end == std::string_view::npos ? message.size() : end + 4;
    ShowLines(out, sign, message.substr(0, headLength));
    if (const std::string_view body = message.substr(headLength); !body.empty()) {
        out << "  " << sign << ' ' << diagnostics::Printable(body, kMostOfABody) << "  (" << body.size() << " bytes)\n";
    }
}

} // namespace

void ShowExchange(std::ostream &out, const std::string &title, const diagnostics::Exchange &exchange,
                  const diagnostics::Findings &findings)
{
    out << title << '\n';
    ShowMessage(out, ">", exchange.request);
    ShowMessage(out, "<", exchange.reply);
    for (const diagnostics::Finding &finding : findings) {
        out << "  " << WeightWord(finding.rule->weight) << ' ' << finding.rule->name << ": " << finding.rule->sentence
            << "\n    seen: " << finding.evidence << "\n    the device: " << finding.rule->device << '\n';
    }
    out << (findings.empty() ? "  nothing wrong\n" : "") << std::flush;
}

} // namespace client
