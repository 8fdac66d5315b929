// First bytes, head, segments and status of a reply.
#include "diagnostics/device_reading.h"
#include "diagnostics/head_lines.h"
#include "diagnostics/judge.h"
#include "diagnostics/printable.h"
#include "diagnostics/reply_rules.h"

#include <algorithm>

namespace diagnostics {

namespace {

constexpr std::size_t kNearlyTooLong = 900;
constexpr std::chrono::seconds kPatience{5};
constexpr std::string_view kHeadEnd = "\r\n\r\n";

std::string Count(std::size_t bytes)
{
    return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
}

bool IsTls(std::string_view reply)
{
    // an alert or a handshake record, version 3.x
    return reply.size() >= 2 && (reply[0] == 0x15 || reply[0] == 0x16) && reply[1] == 3;
}

// Null when the reply begins like HTTP.
const Rule *FirstBytesRule(const Exchange &exchange)
{
    if (exchange.reply.empty()) {
        return exchange.end == End::kReset ? &kResetEarly : exchange.end == End::kTimeOut ? &kSilent : &kClosedEmpty;
    }
    if (IsTls(exchange.reply)) {
        return &kTls;
    }
    const std::string_view reply = exchange.reply;
    const bool isHttp = reply.starts_with("HTTP/") || std::string_view("HTTP/").starts_with(reply);
    return isHttp ? nullptr : &kNotHttp;
}

// Why the device found no head in what it read.
Finding NoHead(const Exchange &exchange)
{
    const std::string_view reply = exchange.reply;
    const std::size_t end = reply.find(kHeadEnd);
    const std::size_t feeds = std::min(reply.find("\n\n"), reply.find("\n\r\n"));
    const std::string seen = "the first " + Count(std::min(exchange.firstBytes, reply.size())) + ": ";
    const auto finding = [&](const Rule &rule, const std::string &fact) {
        return Finding{&rule, fact + "; " + seen + Printable(reply.substr(0, exchange.firstBytes), 60)};
    };
    if (end != std::string_view::npos && end < feeds && end + kHeadEnd.size() > kFirstReception) {
        return finding(kHeadTooLong, "it has " + Count(end + kHeadEnd.size()));
    }
    if (feeds < std::min(end, kFirstReception)) {
        return finding(kBareLineFeeds, "an empty line without carriage return after " + Count(feeds));
    }
    if (end != std::string_view::npos) {
        return finding(kHeadInPieces, "it ends after " + Count(end + kHeadEnd.size()) + ", of which " +
                                          std::to_string(exchange.firstBytes) + " came at once");
    }
    if (reply.size() >= kFirstReception) {
        return finding(kHeadTooLong, "no blank line in " + Count(reply.size()));
    }
    return finding(kHeadWithoutEnd, "no blank line in all " + Count(reply.size()));
}

void JudgeSegments(const Exchange &exchange, const DeviceReading &device, Findings *findings)
{
    const std::size_t wanted = std::min(exchange.reply.size(), kFirstReception);
    const bool split = exchange.firstBytes < wanted;
    const std::string came = Count(exchange.firstBytes) + " of " + std::to_string(exchange.reply.size());
    if (split && exchange.call == Call::kDownload && device.status() == 200) {
        const std::string head = "the head has " + Count(device.headLength());
        findings->push_back({&kHeadAlone, came + " came first, " + head + ": the file has " +
                                              std::to_string(device.zeros()) + " zeros in place of its beginning"});
    } else if (split && exchange.call == Call::kPurchase && device.status() >= 400 &&
               DeviceNumber(device.Verdict("X-Error-Code").value_or("")) == 0) {
        findings->push_back({&kMessageApart, came + " came first"});
    } else if (!split && exchange.segments > 1) {
        findings->push_back(
            {&kTogetherByLuck, Count(wanted) + " in " + std::to_string(exchange.segments) + " segments"});
    }
}

const Rule *StatusRule(int status, Call call)
{
    if (status == 200) {
        return nullptr;
    }
    if (status >= 100 && status < 200) {
        return &kInterim;
    }
    if (status >= 200 && status < 300) {
        return &kOtherSuccess;
    }
    if (status >= 300 && status < 400) {
        return &kRedirect;
    }
    if (status >= 400 && status < 500) {
        // how a purchase is refused is judged by its verdict
        return call == Call::kDownload ? &kRequestRefused : nullptr;
    }
    return status >= 500 && status < 600 ? &kServerFailed : &kStatusLine;
}

void JudgeStatus(const Exchange &exchange, const DeviceReading &device, Findings *findings)
{
    const std::vector<HeadLine> lines = ReadHeadLines(exchange.reply);
    const std::string line = lines.empty() ? "" : Printable(lines.front().whole);
    if (const Rule *rule = StatusRule(device.status(), exchange.call)) {
        const HeadLine *location = FindLine(lines, "Location");
        findings->push_back({rule, line + (location == nullptr ? "" : "; " + Printable(location->whole))});
    }
}

void JudgeWholeHead(const Exchange &exchange, const DeviceReading &device, Findings *findings)
{
    const std::string_view head = std::string_view(exchange.reply).substr(0, device.headLength());
    for (std::size_t at = head.find('\n'); at != std::string_view::npos; at = head.find('\n', at + 1)) {
        if (at == 0 || head[at - 1] != '\r') {
            const std::size_t line = head.rfind('\n', at - (at > 0 ? 1 : 0)) + 1;
            findings->push_back({&kMixedLineEnds, Printable(head.substr(line, at + 1 - line))});
            break;
        }
    }
    if (device.headLength() > kNearlyTooLong) {
        findings->push_back({&kHeadNearlyTooLong, "it has " + Count(device.headLength())});
    }
    JudgeSegments(exchange, device, findings);
    JudgeStatus(exchange, device, findings);
}

} // namespace

Findings JudgeHead(const Exchange &exchange)
{
    Findings findings;
    const DeviceReading device(exchange);
    if (const Rule *rule = FirstBytesRule(exchange)) {
        findings.push_back({rule, exchange.reply.empty() ? "no byte came" : Printable(exchange.reply, 60)});
        return findings;
    }
    if (device.headIsWhole()) {
        JudgeWholeHead(exchange, device, &findings);
    } else {
        findings.push_back(NoHead(exchange));
    }
    if (exchange.firstByteAfter > kPatience) {
        findings.push_back({&kSlow, std::to_string(exchange.firstByteAfter.count()) + " ms"});
    }
    return findings;
}

} // namespace diagnostics
