// All rules. Their names are part of the JSON output, so do not change them.
#pragma once

#include "diagnostics/fixes.h"
#include "http/reply_facts.h"

#include <algorithm>
#include <array>

namespace diagnostics {

inline constexpr std::string_view kNothingSent = "the call returns 0 and sends nothing";
inline constexpr std::string_view kFindsNoStatus = "it finds no status; the call returns 0";
inline constexpr std::string_view kFindsNoLength =
    "it stores only what follows the head in the first 1024 bytes, padded with zeros";

consteval Rule Error(std::string_view name, Topic topic, std::string_view sentence, std::string_view device,
                     const Fix *fix = nullptr)
{
    return {name, topic, Severity::kError, sentence, device, fix};
}

consteval Rule Warning(std::string_view name, Topic topic, std::string_view sentence, std::string_view device,
                       const Fix *fix = nullptr)
{
    return {name, topic, Severity::kWarning, sentence, device, fix};
}

// The library finds no head. The trace reports the same names and sentences.
consteval Rule NoHead(pavonix::HeadFault fault, Topic topic, std::string_view device, const Fix *fix = nullptr)
{
    return Error(pavonix::TextOf(fault).name, topic, pavonix::TextOf(fault).sentence, device, fix);
}

// In the order of topics.
inline constexpr auto kRules = [] {
    using enum Topic;
    return std::array{
        Error("url-empty", kUrl, "The URL is empty.", kNothingSent),
        Error("url-https", kUrl, "The URL asks for TLS, which the library does not support.", kNothingSent,
              &kPlainHttp),
        Error("url-scheme", kUrl, "The URL's scheme is not http://.", kNothingSent),
        Error("url-no-host", kUrl, "The URL has no host.", kNothingSent),
        Error("url-ipv6", kUrl, "The URL has an IPv6 address.",
              "it takes the text before the first colon for the host; the call returns 0"),
        Error("url-no-path", kUrl, "The URL has no path, not even a slash after the host.", kNothingSent),
        Error("url-too-long", kUrl, "The URL, with a download's query, has 256 characters or more.", kNothingSent),
        Warning("url-long", kUrl, "The URL has 200 characters or more.",
                "a download with the longest numbers in its query does not fit and returns 0"),
        Error("url-bare-path", kUrl, "The URL's path is only a slash.",
              "it sends a purchase without a path, which servers refuse as a bad request"),
        Error("url-query", kUrl, "The URL already has a query or a fragment.",
              "it appends \"?type=...\" unchanged, and sends a fragment, too"),
        Error("url-characters", kUrl, "The URL contains spaces, control characters or non-ASCII letters.",
              "it sends them unchanged, which makes the request malformed"),
        Error("name-unknown", kName, "The host name is unknown.", kNothingSent),
        Error("name-no-answer", kName, "The name server did not reply.", kNothingSent),
        Error("name-no-ipv4", kName, "The host has no IPv4 address.",
              "it uses IPv4 only; the call returns 0 and sends nothing"),
        Error("refused", kConnection, "The connection was refused: no server listens at the port.", kNothingSent),
        Error("unreachable", kConnection, "The address cannot be reached.", kNothingSent),
        Error("connect-time-out", kConnection,
              "The connection attempt timed out: a firewall drops it, or there is no such machine.",
              "it waits until the system gives up, often a minute; the call then returns 0"),
        Error("send-failed", kConnection, "The connection broke while the request was sent.", "the call returns 0"),
        Warning("no-request", kRequest, "The client connected but sent no complete request.",
                "it always sends one: the client is another program, or lost its connection"),
        Warning("client-left", kRequest, "The client closed the connection before the whole reply had arrived.",
                "it lost its connection, or its application ended"),
        Warning("not-a-device", kRequest, "The request was not made by the library: User-Serial or User-ID is missing.",
                "it always sends both, even if they are empty"),
        Warning("serial-empty", kRequest, "The request has no serial.",
                "its profile is unreadable or lacks User-Serial"),
        Warning("user-id-zero", kRequest, "The request's user id is 0.",
                "its profile is unreadable or has no number after User-Id"),
        Error("token-empty", kRequest, "The purchase has no token: User-Cert is empty.",
              "its profile's keys are missing or unusable; see pavonix profile check"),
        Error("token-not-base64", kRequest, "User-Cert is not base64.",
              "it always sends base64: the request was changed on its way"),
        Error("form-incomplete", kRequest, "The form is shorter than its Content-Length.",
              "it always sends the whole form: the request was truncated on its way"),
        Error("silent", kFirstBytes, "The server accepted the request but sent no reply in time.",
              "it has no time-out: the call returns only when the server replies or closes"),
        Error("closed-empty", kFirstBytes, "The server closed the connection without a reply.", kFindsNoStatus),
        Error("reset-early", kFirstBytes, "The server reset the connection instead of replying.", kFindsNoStatus),
        NoHead(pavonix::HeadFault::kTls, kFirstBytes, kFindsNoStatus, &kPlainHttp),
        NoHead(pavonix::HeadFault::kNotHttp, kFirstBytes,
               "it reads the status from the three characters after the first space; the call usually returns 0"),
        Warning("odd-start", kFirstBytes, "The reply does not start with \"HTTP/\".",
                "it does not check this: it reads the status after the first space"),
        NoHead(pavonix::HeadFault::kTooLong, kHead, kFindsNoStatus, &kShortHead),
        NoHead(pavonix::HeadFault::kInPieces, kHead,
               "it receives once and sees only the first piece; the call returns 0", &kOneWrite),
        NoHead(pavonix::HeadFault::kZeroByte, kHead,
               "its strings end at a zero byte, so it finds no end of the head; the call returns 0"),
        NoHead(pavonix::HeadFault::kBareLineFeeds, kHead, kFindsNoStatus),
        NoHead(pavonix::HeadFault::kBareCarriageReturns, kHead, kFindsNoStatus),
        NoHead(pavonix::HeadFault::kWithoutEnd, kHead, kFindsNoStatus),
        Warning("mixed-line-ends", kHead, "Some of the head's lines do not end in CR LF.",
                "a value continues into the next line"),
        Warning("head-nearly-too-long", kHead, "The head is longer than 900 bytes; one more header may be too many.",
                "a head of more than 1024 bytes makes the call return 0", &kShortHead),
        Error("head-alone", kSegments,
              "The first packet did not hold the first 1024 bytes of the reply, or the whole reply.",
              "body bytes missing from the first packet are stored as zeros, and the same number is lost from the end",
              &kOneWrite),
        Warning("packets-joined", kSegments,
                "The first 1024 bytes of the reply arrived in several packets that happened to be read together.",
                "sometimes it reads only the first packet: it then returns 0 or stores zeros", &kOneWrite),
        Warning("message-apart", kSegments, "The body, which serves as the message, was not in the first packet.",
                "the record's message is empty or truncated", &kOneWrite),
        Error("status-line", kStatus,
              "There is no three-digit status from 100 to 599 after the first space of the status line.",
              "it reads the status from the three characters after the first space"),
        Error("interim", kStatus, "The server sends an interim reply before the final one.",
              "it takes the interim reply for the final one"),
        Error("other-success", kStatus, "The status means success but is not 200.",
              "only 200 counts: nothing is stored, and a purchase counts as refused"),
        Error("redirect", kStatus, "The server sends a redirection or \"not modified\".",
              "it follows no redirection and sends no conditional request; the call returns the status",
              &kNoRedirection),
        Error("tls-port", kStatus, "The server refuses plain HTTP at this port: it expects TLS.",
              "the call returns the status", &kPlainHttp),
        Error("request-refused", kStatus, "The server refuses the request.",
              "the call returns the status; code, message and body are discarded"),
        Error("server-failed", kStatus, "The server failed.", "the call returns the status"),
        Error("length-missing", kLength, "There is no Content-Length.", kFindsNoLength, &kWholeBody),
        Error("length-case", kLength, "Content-Length is spelled differently; the library is case-sensitive.",
              kFindsNoLength, &kSpelling),
        Error("length-hidden", kLength, "An earlier line contains the text Content-Length.",
              "it reads the first line that contains this text", &kHiding),
        Error("length-no-number", kLength, "Content-Length is not a plain number from 0 to 2147483646.",
              "it reads the leading digits, or 0 if there are none", &kWholeBody),
        Error("length-twice", kLength, "There are two Content-Length headers with different values.",
              "it uses the first", &kWholeBody),
        Error("length-zero", kLength, "Content-Length is 0.", "it treats 0 as unknown and stores a file of zeros",
              &kWholeBody),
        Error("length-too-small", kLength, "Content-Length is smaller than the body.",
              "it stores the announced length, rounded up to the end of a receive of 1024 bytes", &kWholeBody),
        Error("length-too-large", kLength, "The body is shorter than Content-Length, or the connection ended early.",
              "it waits for the rest until the connection ends, and stores the bytes that arrived", &kWholeBody),
        Error("chunked", kCoding, "The body is sent in chunks.", "it stores the chunk lengths as part of the file",
              &kWholeBody),
        Error("compressed", kCoding, "The body is compressed.", "it stores the compressed bytes", &kWholeBody),
        Error("not-xml", kBody, "The body is not a complete XML document.", "it stores the body without checking it"),
        Error("body-reset", kBody, "The connection was reset before the whole body had arrived.",
              "it stores the bytes that arrived; the call still returns 200"),
        Error("file-not-whole", kLibrary, "The library stored a file that is not complete XML.",
              "the application gets that file; see the errors above"),
        Error("library-differs", kLibrary, "The library and the plain socket received different replies.",
              "compare both: the server may alternate, or depend on the headers"),
        Error("sold-with-code", kVerdict, "The shop sold the good (200) but also sent X-Error-Code.",
              "it ignores the code", &kVerdictHeaders),
        Warning("code-missing", kVerdict, "The refusal has no X-Error-Code.",
                "the record gets code 0 and the start of the body as its message", &kVerdictHeaders),
        Error("code-case", kVerdict,
              "X-Error-Code, X-Error-Message or X-Server-Timestamp is spelled differently; the library is "
              "case-sensitive.",
              "it does not find this header", &kSpelling),
        Error("code-hidden", kVerdict, "An earlier line contains the name of this header.",
              "it reads the first line that contains the name", &kHiding),
        Warning("code-zero", kVerdict, "X-Error-Code is 0 or not a number.",
                "the record gets code 0 and, as its message, the start of the body instead of X-Error-Message",
                &kVerdictHeaders),
        Warning("message-missing", kVerdict, "The refusal has a code but no X-Error-Message.",
                "the record's message is left unchanged", &kVerdictHeaders),
        Error("message-too-long", kVerdict, "X-Error-Message has more than 254 characters.",
              "it overruns BuyGoodResult; BuyGoodRoomyResult has room for it", &kVerdictHeaders),
        Warning("message-not-ascii", kVerdict, "The message contains non-ASCII characters.",
                "it decodes them with its own code page: a UTF-8 letter becomes two or more wrong ones",
                &kVerdictHeaders),
        Error("timestamp-missing", kVerdict, "The refusal with code 906 has no X-Server-Timestamp.",
              "the application cannot show the right time", &kVerdictHeaders),
        Error("timestamp-too-long", kVerdict, "X-Server-Timestamp has more than 62 characters.",
              "it overruns BuyGoodResult; BuyGoodRoomyResult has room for it", &kVerdictHeaders),
        Warning("timestamp-form", kVerdict, "X-Server-Timestamp is not a date and time in numbers.",
                "it passes the text on; applications expect 2010-3-5 9:7:3.042", &kVerdictHeaders),
        Error("line-end-unread", kVerdict,
              "The server resets the connection after its reply, usually because it did not read the CR LF after the "
              "form.",
              "on Windows a reset discards unread bytes: sometimes the call returns 0 for a good that was sold",
              &kReadFormEnd),
        Error("not-a-shop", kVerdict, "The reply to a purchase is not a shop's: nothing is sold at this address.",
              "every purchase is refused", &kShopAddress),
        Error("bad-token-sold", kToken, "A purchase with a forged token was accepted.",
              "anyone who knows a serial and a user id can buy", &kCheckTheToken),
        Warning("clock-not-checked", kToken, "A token five hours old or in the future was accepted.",
                "an intercepted token can be used later", &kCheckTheToken),
        Warning("clock-other-code", kToken, "A wrong clock is refused with a code other than 906.",
                "it passes on the server's time only with 906", &kVerdictHeaders),
        Error("replay-sold", kReplay, "The same token was accepted twice.", "an intercepted purchase can be repeated",
              &kCheckTheToken),
        Warning("replay-unverified", kReplay, "Without buying it is unknown whether a token is accepted twice.",
                "to find out, use --buy TYPE,ID (this buys that good)", &kCheckTheToken),
        Error("sold-nothing", kToken, "A purchase of a good that does not exist was accepted.",
              "the application takes it for sold", &kVerdictHeaders),
        Warning("token-unverified", kToken, "Without buying it is unknown whether the shop checks the token.",
                "to find out, use --buy TYPE,ID (this buys that good)", &kCheckTheToken),
        Error("device-refused", kToken, "The purchase of a good that should be for sale was refused.",
              "the application shows the refusal", &kRegister),
        Warning("slow", kTime, "The first byte took more than five seconds.", "it waits, and so does the application"),
    };
}();

// Null for an unknown name.
constexpr const Rule *FindRule(std::string_view name)
{
    const auto *const found =
        std::find_if(kRules.begin(), kRules.end(), [=](const Rule &rule) { return rule.name == name; });
    return found == kRules.end() ? nullptr : &*found;
}

// An unknown name does not compile.
consteval const Rule &RuleNamed(std::string_view name)
{
    return *FindRule(name);
}

} // namespace diagnostics
