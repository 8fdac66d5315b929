// Exchanges written by hand and what is wrong with each. The device's side of the
// diagnosis is compared with the library itself by the client's tests.
#include "diagnostics/rules.h"
#include "diagnostics/device_reading.h"
#include "diagnostics/diagnose.h"
#include "diagnostics/printable.h"
#include "diagnostics/xml_fault.h"

#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <sstream>

namespace diagnostics {
namespace {

using Names = std::set<std::string>;

Names NamesOf(const Findings &findings)
{
    Names names;
    for (const Finding &finding : findings) {
        EXPECT_FALSE(finding.evidence.empty()) << finding.rule->name;
        names.emplace(finding.rule->name);
    }
    return names;
}

// The observer's view of a reply: how much of it came first, and how it ended.
struct Row {
    Names expected;
    std::string reply;
    std::size_t firstBytes = kFirstReception;
    End end = End::kClosed;
    unsigned segments = 1;
};

Names DiagnosedAs(Call call, const Row &row)
{
    Exchange exchange;
    exchange.call = call;
    exchange.reply = row.reply;
    exchange.firstBytes = row.firstBytes;
    exchange.end = row.end;
    exchange.segments = row.segments;
    return NamesOf(Diagnose(exchange));
}

std::string Ok(const std::string &lines, const std::string &body = "<a/>")
{
    return "HTTP/1.1 200 OK\r\n" + lines + "\r\n" + body;
}

std::string Sized(const std::string &body, const std::string &lines = "")
{
    return Ok(lines + "Content-Length: " + std::to_string(body.size()) + "\r\n", body);
}

const std::string kLong = "<a>" + std::string(3000, 'x') + "</a>";
const std::string kFull = "HTTP/1.1 200 OK\r\nContent-Length: 4\r\nX: ";

const Row kDownloads[] = {
    {{}, Sized("<a/>")},
    {{}, Sized(kLong), 2000, End::kOpen},
    {{"silent"}, "", kFirstReception, End::kTimeOut},
    {{"closed-empty"}, ""},
    {{"reset-early"}, "", kFirstReception, End::kReset},
    {{"tls"}, "\x15\x03\x01"},
    {{"not-http"}, "\x15 telnet\r\n"},
    {{}, "\r\n" + Sized("<a/>")}, // the library passes over empty lines
    {{"not-http"}, "SSH-2.0-OpenSSH_9.2 200 x\r\n"},
    {{"head-without-end"}, "HTT"},
    {{"head-without-end"}, "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n"},
    {{"head-too-long"}, kFull + std::string(2000, 'y')},
    {{"head-nearly-too-long"}, kFull + std::string(1024 - kFull.size() - 4, 'y') + "\r\n\r\n<a/>"},
    {{"head-too-long"}, kFull + std::string(1025 - kFull.size() - 4, 'y') + "\r\n\r\n<a/>"},
    {{"head-in-pieces"}, Sized("<a/>"), 20},
    {{"head-in-pieces"}, "HTTP/1.1 200 OK\r\nContent-Le", 28, End::kTimeOut}, // slow, not without end
    {{"bare-line-feeds"}, "HTTP/1.1 200 OK\nContent-Length: 4\n\n<a/>"},
    {{"bare-line-feeds"}, "HTTP/1.1 200 OK\r\nContent-Length: 4\n\r\n<a/>"},
    {{"bare-carriage-returns"}, "HTTP/1.1 200 OK\rContent-Length: 4\r\r<a/>"},
    {{"head-zero-byte"}, Sized("<a/>", std::string("X: \0\r\n", 6))},
    {{"mixed-line-ends"}, "HTTP/1.1 200 OK\r\nContent-Length: 4\nX: y\r\n\r\n<a/>"},
    {{"head-alone"}, Sized(kLong), 41},
    {{"packets-joined"}, Sized(kLong), 1024, End::kClosed, 2},
    {{"status-line"}, "HTTP/1.1  \r\n\r\n"},
    {{"status-line"}, "HTTP/1.1\r\nX: 200\r\n\r\n"},
    {{"status-line"}, "HTTP/1.1 999 Odd\r\n\r\n"},
    {{"odd-start"}, "ICY 200 OK\r\nContent-Length: 4\r\n\r\n<a/>"},
    {{"tls-port"}, "HTTP/1.0 400 Bad\r\n\r\nClient sent an HTTP request to an HTTPS server."},
    {{}, Sized("<a/>", "Transfer-Encoding: identity\r\n")},
    {{"interim"}, "HTTP/1.1 100 Continue\r\n\r\n" + Sized("<a/>")},
    {{"other-success"}, "HTTP/1.1 206 Partial\r\nContent-Length: 4\r\n\r\n<a/>"},
    {{"redirect"}, "HTTP/1.1 301 Moved\r\nLocation: https://x/\r\n\r\n"},
    {{"request-refused"}, "HTTP/1.1 404 No\r\n\r\n"},
    {{"server-failed"}, "HTTP/1.1 503 No\r\n\r\n"},
    {{"length-missing"}, Ok("")},
    {{"length-missing"}, Ok("Vary: Content-Length\r\n")},
    {{"length-case"}, Ok("content-length: 4\r\n")},
    {{"length-hidden"}, Ok("Access-Control-Expose-Headers: Content-Length\r\nContent-Length: 4\r\n")},
    {{"length-hidden"}, Ok("X-Content-Length: 900\r\ncontent-length: 4\r\n")},
    {{"length-no-number"}, Ok("Content-Length: -4\r\n")},
    {{"length-no-number"}, Ok("Content-Length: 9999999999\r\n")},
    {{"length-twice"}, Ok("Content-Length: 4\r\nContent-Length: 5\r\n")},
    {{"length-zero"}, Ok("Content-Length: 0\r\n")},
    {{"length-too-small"}, Ok("Content-Length: 3\r\n")},
    {{"length-too-large"}, Ok("Content-Length: 5\r\n")},
    {{"body-reset"}, Ok("Content-Length: 5\r\n"), kFirstReception, End::kReset},
    {{"chunked"}, Ok("Transfer-Encoding: chunked\r\n", "4\r\n<a/>\r\n0\r\n\r\n")},
    {{"compressed"}, Ok("content-encoding: gzip\r\nContent-Length: 4\r\n", "\x1f\x8b..")},
    {{"not-xml"}, Sized("<a>")},
    {{"not-xml"}, Sized("<!DOCTYPE a [<!ENTITY b SYSTEM 'file:///etc/passwd'>]><a>&c;</a>")},
};

std::string Refusal(const std::string &lines, const std::string &body = "")
{
    return "HTTP/1.1 403 No\r\n" + lines + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

const std::string kClock = "X-Error-Code: 906\r\nX-Error-Message: off\r\n";

const Row kPurchases[] = {
    {{}, Ok("", "")},
    {{}, Sized(kLong), 41}, // nobody reads the body of a sale
    {{}, Refusal("X-Error-Code: 7\r\nX-Error-Message: no\r\n", kLong), 80},
    {{}, Refusal(kClock + "X-Server-Timestamp: 2010-3-5 9:7:3.-042\r\n")},
    {{}, Refusal("X-Error-Code: 7\r\nX-Error-Message: " + std::string(254, 'm') + "\r\n")},
    {{"head-in-pieces"}, Refusal(kClock), 30},
    {{"sold-with-code"}, Ok("X-Error-Code: 7\r\n")},
    {{"code-missing"}, Refusal("", "out of goods")},
    {{"code-missing", "message-apart"}, Refusal("", "out of goods"), 40},
    {{"code-case"}, Refusal("x-error-code: 7\r\n")},
    {{"code-hidden"}, Refusal("Access-Control-Expose-Headers: X-Error-Code\r\nX-Error-Code: 7\r\n")},
    {{"code-zero"}, Refusal("X-Error-Code: 0\r\nX-Error-Message: no\r\n")},
    {{"code-zero"}, Refusal("X-Error-Code: none\r\n")},
    {{"message-missing"}, Refusal("X-Error-Code: -5\r\n")},
    {{"message-too-long"}, Refusal("X-Error-Code: 7\r\nX-Error-Message: " + std::string(255, 'm') + "\r\n")},
    {{"message-not-ascii"}, Refusal("X-Error-Code: 7\r\nX-Error-Message: f\xc3\xbcr\r\n")},
    {{"timestamp-missing"}, Refusal(kClock)},
    {{"timestamp-too-long"}, Refusal(kClock + "X-Server-Timestamp: " + std::string(63, '1') + "\r\n")},
    {{"timestamp-form"}, Refusal(kClock + "X-Server-Timestamp: Fri, 05 Mar 2010 09:07:03 GMT\r\n")},
    {{"line-end-unread"}, Refusal("X-Error-Code: 7\r\nX-Error-Message: no\r\n"), kFirstReception, End::kReset},
};

struct RequestRow {
    Names expected;
    Call call;
    std::string lines;
    std::string form = "type=1&id=1&force=0\r\n";
};

const RequestRow kRequests[] = {
    {{}, Call::kPurchase, "User-Serial: P\r\nUser-ID: 4\r\nUser-Cert: aGk=\r\nContent-Length: 19\r\n"},
    {{}, Call::kDownload, "User-Serial: P\r\nUser-ID: 4\r\n", ""},
    {{"not-a-device"}, Call::kDownload, "Accept: */*\r\n", ""},
    {{"serial-empty", "user-id-zero"}, Call::kDownload, "User-Serial: \r\nUser-ID: 0\r\n", ""},
    {{"token-empty"}, Call::kPurchase, "User-Serial: P\r\nUser-ID: 4\r\nUser-Cert: \r\nContent-Length: 19\r\n"},
    {{"token-not-base64"}, Call::kPurchase, "User-Serial: P\r\nUser-ID: 4\r\nUser-Cert: -_\r\nContent-Length: 19\r\n"},
    {{"form-incomplete"}, Call::kPurchase, "User-Serial: P\r\nUser-ID: 4\r\nUser-Cert: aGk=\r\nContent-Length: 22\r\n"},
};

struct UrlRow {
    std::string expected;
    std::string url;
    Call call = Call::kDownload;
};

const UrlRow kUrls[] = {
    {"", "http://h/x"},
    {"", "h/x"},
    {"", "HTTP://h:80/"},
    {"", "http://h/" + std::string(190, 'x')},
    {"", "http://h/" + std::string(246, 'x'), Call::kPurchase},
    {"url-empty", ""},
    {"url-https", "hTTps://h/x"},
    {"url-scheme", "ftp://h/x"},
    {"url-scheme", "h/x//y"},
    {"url-no-host", "http:///x"},
    {"url-no-path", "http://h"},
    {"url-ipv6", "http://[::1]/x"},
    {"url-long", "http://h/" + std::string(191, 'x')},
    {"url-too-long", "http://h/" + std::string(247, 'x'), Call::kPurchase},
    {"url-bare-path", "http://h/", Call::kPurchase},
    {"url-query", "http://h/x?y"},
    {"url-characters", "http://h/x y"},
    {"url-characters", "http://h/\xc3\xbc"},
};

TEST(Diagnostics, EachExchangeBreaksItsRules)
{
    for (const Row &row : kDownloads) {
        EXPECT_EQ(DiagnosedAs(Call::kDownload, row), row.expected) << Printable(row.reply);
    }
    for (const Row &row : kPurchases) {
        EXPECT_EQ(DiagnosedAs(Call::kPurchase, row), row.expected) << Printable(row.reply);
    }
    for (const RequestRow &row : kRequests) {
        Exchange exchange;
        exchange.call = row.call;
        exchange.request = "GET /x HTTP/1.1\r\n" + row.lines + "\r\n" + row.form;
        EXPECT_EQ(NamesOf(DiagnoseRequest(exchange)), row.expected) << row.lines;
    }
    for (const UrlRow &row : kUrls) {
        EXPECT_EQ(NamesOf(DiagnoseUrl(row.url, row.call)), row.expected.empty() ? Names{} : Names{row.expected})
            << row.url;
    }
}

// Rules that an observer with sockets applies; its own tests show them.
constexpr const char *kAppliedElsewhere =
    "name-unknown name-no-answer name-no-ipv4 refused unreachable connect-time-out send-failed library-differs slow "
    "bad-token-sold clock-not-checked clock-other-code replay-sold replay-unverified token-unverified device-refused "
    "sold-nothing no-request client-left not-a-shop file-not-whole";

TEST(Diagnostics, EveryRuleHasARow)
{
    std::istringstream elsewhere(kAppliedElsewhere);
    Names shown(std::istream_iterator<std::string>(elsewhere), {});
    const auto add = [&](const auto &rows) {
        for (const auto &row : rows) {
            shown.insert(row.expected.begin(), row.expected.end());
        }
    };
    add(kDownloads);
    add(kPurchases);
    add(kRequests);
    for (const UrlRow &row : kUrls) {
        shown.insert(row.expected);
    }
    shown.erase("");
    Names all;
    for (const Rule &rule : kRules) {
        EXPECT_TRUE(all.emplace(rule.name).second) << rule.name << " is listed twice";
    }
    EXPECT_EQ(all, shown);
}

TEST(Diagnostics, EvidenceIsPrintable)
{
    EXPECT_EQ(Printable("a\\\r\n\t\x1b[2J\xff"), "a\\\\\\r\\n\\t\\x1b[2J\\xff");
    EXPECT_EQ(Printable("abcdef", 3), "abc...");
    EXPECT_EQ(PrintableText("\xc3\xbc\xe2\x82\xac\t\xc2\x9d\xe2\x80\xae\xe2\x80\xa8\xf3\xa0\x81\x81"),
              "\xc3\xbc\xe2\x82\xac\\t\\u009d\\u202e\\u2028\\U000e0041");
    EXPECT_EQ(PrintableText("a\xff\xc2\xed\xa0\x80\xc0\xaf"), "a\\xff\\xc2\\xed\\xa0\\x80\\xc0\\xaf");
    EXPECT_EQ(XmlFault("<a>\x1b</a>").find('\x1b'), std::string::npos);
}

TEST(Diagnostics, WhatTheDeviceStoresOfASplitReply)
{
    Exchange exchange;
    exchange.reply = Sized(kLong);
    exchange.firstBytes = 100;
    const DeviceReading device(exchange);
    EXPECT_EQ(device.status(), 200);
    EXPECT_EQ(device.announced(), kLong.size());
    EXPECT_EQ(device.zeros(), kFirstReception - 100);
}

} // namespace
} // namespace diagnostics
