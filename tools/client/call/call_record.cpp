#include "call/call_record.h"

#include "diagnostics/rules.h"
#include "diagnostics/printable.h"
#include "system.h"
#include "wire/name_fault.h"

namespace client {

namespace {

constexpr std::size_t kMostKept = 64 * 1024;

CallRecord *current = nullptr;

} // namespace

void CallRecord::Keep(const char *bytes, std::size_t count)
{
    const std::size_t kept = std::min(count, kMostKept - std::min(exchange.reply.size(), kMostKept));
    exchange.reply.append(bytes, kept);
    exchange.beyond += count - kept;
}

diagnostics::Findings CallRecord::Diagnose(const std::string &url) const
{
    diagnostics::Findings findings = diagnostics::DiagnoseUrl(url, exchange.call);
    if (host.empty()) {
        return findings; // no connection was attempted
    }
    if (address.empty()) {
        findings.push_back({&NameRule(host, nameError), diagnostics::Printable(host)});
    } else if (connectError != 0) {
        findings.push_back({&ConnectRule(connectError), address + ": " + NetworkErrorText(connectError)});
    } else if (sendError != 0) {
        findings.push_back({&diagnostics::RuleNamed("send-failed"), address + ": " + NetworkErrorText(sendError)});
    } else {
        diagnostics::Findings more = diagnostics::Diagnose(exchange);
        std::move(more.begin(), more.end(), std::back_inserter(findings));
    }
    return findings;
}

Recording::Recording(CallRecord *record)
{
    current = record;
}

Recording::~Recording()
{
    current = nullptr;
}

CallRecord *Recording::Current()
{
    return current;
}

} // namespace client
