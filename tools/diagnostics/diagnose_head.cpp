// First bytes, head, segments and status of a reply.
#include "diagnostics/device_reading.h"
#include "diagnostics/head_lines.h"
#include "diagnostics/diagnose.h"
#include "diagnostics/printable.h"
#include "diagnostics/rules.h"

#include <algorithm>
#include <sstream>

namespace diagnostics {

namespace {

constexpr std::size_t kNearlyTooLong = 900;
constexpr std::chrono::seconds kPatience{5};

std::string Count(std::size_t bytes)
{
    return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
}

std::string Seconds(std::chrono::milliseconds time)
{
    std::ostringstream text;
    text << static_cast<double>(time.count()) / 1000 << " s";
    return text.str();
}

using pavonix::HeadFault;

const Rule &RuleOf(HeadFault fault, const Exchange &exchange)
{
    if (fault != HeadFault::kNoReply) {
        return *FindRule(pavonix::TextOf(fault).name);
    }
    return exchange.end == End::kReset     ? RuleNamed("reset-early")
           : exchange.end == End::kTimeOut ? RuleNamed("silent")
                                           : RuleNamed("closed-empty");
}

// Shows why the device finds no head in its first receive.
std::string EvidenceOf(HeadFault fault, const Exchange &exchange)
{
    const std::string_view reply = exchange.reply;
    const std::string_view atOnce = reply.substr(0, exchange.firstBytes);
    const std::string waited = exchange.waited.count() == 0 ? "" : " within " + Seconds(exchange.waited);
    if (reply.empty()) {
        return "no byte" + waited;
    }
    if (fault == HeadFault::kTls || fault == HeadFault::kNotHttp) {
        return Printable(reply, 60);
    }
    const std::size_t end = reply.find("\r\n\r\n");
    std::string fact = "no empty line in " + Count(reply.size());
    if (fault == HeadFault::kZeroByte) {
        fact = "after " + Count(reply.find('\0'));
    } else if (end != std::string_view::npos) {
        fact = "the empty line ends after " + Count(end + 4);
    } else if (exchange.end == End::kTimeOut || exchange.end == End::kOpen) {
        fact += waited + "; the connection was still open";
    }
    return fact + "; the first " + Count(atOnce.size()) + ": " + Printable(atOnce, 60);
}

void DiagnoseSegments(const Exchange &exchange, const DeviceReading &device, Findings *findings)
{
    const std::size_t wanted = std::min(exchange.reply.size(), kFirstReception);
    const bool split = exchange.firstBytes < wanted;
    const std::string came = Count(exchange.firstBytes) + " of " + std::to_string(exchange.reply.size());
    if (split && exchange.call == Call::kDownload && device.status() == 200) {
        const std::string head = "the head has " + Count(device.headLength());
        findings->push_back({&RuleNamed("head-alone"), came + " arrived first, " + head +
                                                           "; the file would begin with " +
                                                           std::to_string(device.zeros()) + " zeros"});
    } else if (split && exchange.call == Call::kPurchase && device.status() >= 400 &&
               NumberIn(device.Verdict("X-Error-Code").value_or("")) == 0) {
        findings->push_back({&RuleNamed("message-apart"), came + " arrived first"});
    } else if (!split && exchange.segments > 1) {
        findings->push_back(
            {&RuleNamed("packets-joined"), Count(wanted) + " in " + std::to_string(exchange.segments) + " packets"});
    }
}

// Matches the replies of nginx, Apache and Go to plain HTTP at a TLS port.
bool ExpectsTls(const Exchange &exchange)
{
    return exchange.reply.find("HTTPS port") != std::string::npos ||
           exchange.reply.find("HTTPS server") != std::string::npos ||
           exchange.reply.find("SSL-enabled server port") != std::string::npos;
}

const Rule *StatusRule(int status, const Exchange &exchange)
{
    if (status == 200) {
        return nullptr;
    }
    if (status == 400 && ExpectsTls(exchange)) {
        return &RuleNamed("tls-port");
    }
    if (status >= 100 && status < 200) {
        return &RuleNamed("interim");
    }
    if (status >= 200 && status < 300) {
        return &RuleNamed("other-success");
    }
    if (status >= 300 && status < 400) {
        return &RuleNamed("redirect");
    }
    if (status >= 400 && status < 500) {
        // a refused purchase is diagnosed by its verdict
        return exchange.call == Call::kDownload ? &RuleNamed("request-refused") : nullptr;
    }
    return status >= 500 && status < 600 ? &RuleNamed("server-failed") : &RuleNamed("status-line");
}

void DiagnoseStatus(const Exchange &exchange, const DeviceReading &device, Findings *findings)
{
    const std::vector<HeadLine> lines = ReadHeadLines(exchange.reply);
    if (const Rule *rule = StatusRule(device.status(), exchange)) {
        const bool readable = rule != &RuleNamed("status-line") && !lines.empty();
        const std::string line = readable ? Printable(lines.front().whole) : Printable(exchange.reply, 60);
        const HeadLine *location = FindLine(lines, "Location");
        findings->push_back({rule, line + (location == nullptr ? "" : "; " + Printable(location->whole))});
    }
}

void DiagnoseWholeHead(const Exchange &exchange, const DeviceReading &device, Findings *findings)
{
    const std::string_view head = std::string_view(exchange.reply).substr(0, device.headLength());
    for (std::size_t at = head.find('\n'); at != std::string_view::npos; at = head.find('\n', at + 1)) {
        if (at == 0 || head[at - 1] != '\r') {
            const std::size_t line = head.rfind('\n', at - (at > 0 ? 1 : 0)) + 1;
            findings->push_back({&RuleNamed("mixed-line-ends"), Printable(head.substr(line, at + 1 - line))});
            break;
        }
    }
    if (device.headLength() > kNearlyTooLong) {
        findings->push_back({&RuleNamed("head-nearly-too-long"), "it has " + Count(device.headLength())});
    }
    DiagnoseSegments(exchange, device, findings);
    DiagnoseStatus(exchange, device, findings);
}

} // namespace

Findings DiagnoseHead(const Exchange &exchange)
{
    Findings findings;
    const DeviceReading device(exchange);
    const bool ended = exchange.end == End::kClosed || exchange.end == End::kReset;
    const HeadFault fault = pavonix::FindHeadFault(exchange.reply, exchange.firstBytes, ended);
    if (fault != HeadFault::kNone) {
        findings.push_back({&RuleOf(fault, exchange), EvidenceOf(fault, exchange)});
    } else {
        if (!pavonix::BeginsLikeHttp(exchange.reply)) {
            findings.push_back({&RuleNamed("odd-start"), Printable(exchange.reply, 30)});
        }
        DiagnoseWholeHead(exchange, device, &findings);
    }
    if (!exchange.reply.empty() && exchange.firstByteAfter > kPatience) {
        findings.push_back({&RuleNamed("slow"), std::to_string(exchange.firstByteAfter.count()) + " ms"});
    }
    return findings;
}

} // namespace diagnostics
