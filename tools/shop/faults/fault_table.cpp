#include "shop/faults/fault_table.h"

#include "shop/errors.h"
#include "shop/faults/spoiled_replies.h"
#include "shop/replies.h"

#include <algorithm>

namespace shop {

namespace http = boost::beast::http;

namespace {

constexpr std::string_view kPrefix = "/fault/";

Fault Spoiled(const char *name, const char *does, const char *download, const char *sale, const char *refusal,
              std::function<Transmission(Response)> send)
{
    return {name, does, download, sale, refusal, nullptr, std::move(send)};
}

// Sends the same bytes whatever was asked.
Fault Bytes(const char *name, const char *does, const Transmission &transmission)
{
    const bool waits = transmission.end == Transmission::End::kSilence;
    const char *bought = waits ? "waits" : "0";
    return {name,
            does,
            waits ? "waits" : "0 none",
            bought,
            bought,
            nullptr,
            [=](const Response &) { return transmission; }};
}

// Refuses in the shop's place: the status, and the code in a purchase's record.
Fault Refused(const std::string &name, const std::string &does, int status, int code, std::function<Response()> answer)
{
    const std::string number = std::to_string(status);
    const std::string verdict = number + " code " + std::to_string(code);
    return {name, does, number + " none", verdict, verdict, std::move(answer), AsOnePiece};
}

Fault Refused(const ErrorKind &kind)
{
    return Refused("code-" + std::to_string(kind.code), std::string("refuses: ") + kind.text, kind.status, kind.code,
                   [kind] { return MakeErrorResponse(kind, kind.text); });
}

Response Verdict(const char *code, const std::string &message, const std::string &body)
{
    Response response = MakeResponse(http::status::forbidden, body);
    response.set("X-Error-Code", code);
    response.set("X-Error-Message", message);
    return response;
}

Response LongTimestamp()
{
    Response response = MakeErrorResponse(kClockOff, kClockOff.text);
    response.set("X-Server-Timestamp", std::string(response["X-Server-Timestamp"]) + std::string(300, '0'));
    return response;
}

Response Redirection()
{
    Response response = MakeResponse(http::status::found, "");
    response.set(http::field::location, "/shop/list");
    return response;
}

std::vector<Fault> MakeFaults()
{
    using End = Transmission::End;
    const std::string longMessage(700, 'm');
    std::vector<Fault> faults = {
        Spoiled("head-apart", "sends the head, and the body in a segment of its own", //
                "200 zeros", "200", "404 code 903", HeadApart),
        Spoiled("head-in-pieces", "sends the status line, and the rest in a segment of its own", //
                "0 none", "0", "0", HeadInPieces),
        Spoiled("late", "answers after six seconds", "200 right", "200", "404 code 903", Late),
        Spoiled("slow", "lets all behind the first 1024 bytes drip", //
                "200 right", "200", "404 code 903", Slow),
        Spoiled("short", "leaves out the last 100 bytes that it announced", //
                "200 cut", "200", "404 code 903", Short),
        Spoiled("long", "sends 100 bytes more than it announced", //
                "200 longer", "200", "404 code 903", Long),
        Spoiled("no-length", "sends no Content-Length", "200 cut", "200", "404 code 903", WithoutLength),
        Spoiled("chunked", "sends the body in chunks, without a length", //
                "200 coded", "200", "404 code 903", Chunked),
        Spoiled("compressed", "sends the body through gzip", "200 coded", "200", "404 code 903", Compressed),
        Spoiled("long-head", "sends a head of more than 1024 bytes", "0 none", "0", "0", LongHead),
        Spoiled("lower-case", "writes header names in lower case, which the library does not find", //
                "200 cut", "200", "404 code 0", LowerCase),
        Spoiled("hidden", "names its headers in the value of an earlier one, which the library takes for them",
                "200 cut", "200", "404 code 0", HiddenHeaders),
        Bytes("silent", "says nothing for a minute", {{}, End::kSilence}),
        Bytes("nothing", "closes the connection without a byte", {}),
        Bytes("reset", "resets the connection without a byte", {{}, End::kReset}),
        Spoiled("reset-in-body", "resets the connection within the body", //
                "200 cut", "200", "404 code 903", ResetInBody),
        Bytes("not-http", "greets like a mail server", {{{"220 mail.example ESMTP\r\n"}}}),
        Bytes("tls", "answers with an alert of TLS", {{{{"\x15\x03\x01\x00\x02\x02\x46", 7}}}}),
        Spoiled("bare-line-feeds", "ends the head's lines with LF instead of CR LF", "0 none", "0", "0", BareLineFeeds),
        Spoiled("head-without-end", "leaves out the empty line and the body", "0 none", "0", "0", HeadWithoutEnd),
        Spoiled("interim", "sends 100 Continue, and the reply a moment later", //
                "100 none", "100 code 0", "100 code 0", InterimFirst),
        Spoiled("sold-with-code", "adds an error code to any reply, also to a 200", //
                "200 right", "200", "404 code 909", SoldWithCode),
        Refused("redirect", "redirects to another path", 302, 0, Redirection),
        Refused("code-0", "refuses with code 0; the record's message is the body", 403, 0,
                [] { return Verdict("0", "not read", "The body is the message"); }),
        Refused("long-message", "refuses with a message of 700 characters, which overruns the plain record", 403, 999,
                [=] { return Verdict("999", longMessage, ""); }),
        Refused("long-timestamp", "refuses with 906 and a time of over 300 characters", 403, 906, LongTimestamp),
        Refused("utf-8-message", "refuses with a message in UTF-8, which the record has in the ANSI code page", 403,
                999,
                [] {
                    return Verdict("999",
                                   "Guthaben reicht nicht f\xc3\xbcr B\xc3\xbc"
                                   "cher",
                                   "");
                }),
    };
    for (const ErrorKind &kind : kErrorKinds) {
        faults.push_back(Refused(kind));
    }
    return faults;
}

} // namespace

const std::vector<Fault> &AllFaults()
{
    static const std::vector<Fault> faults = MakeFaults();
    return faults;
}

const Fault *FindFault(std::string_view name)
{
    const std::vector<Fault> &faults = AllFaults();
    const auto found = std::find_if(faults.begin(), faults.end(), [=](const Fault &one) { return one.name == name; });
    return found == faults.end() ? nullptr : &*found;
}

const Fault *TakeFault(Request *request)
{
    const std::string target(request->target());
    if (!target.starts_with(kPrefix)) {
        return nullptr;
    }
    const std::size_t end = std::min(target.find('/', kPrefix.size()), target.size());
    const Fault *fault = FindFault(std::string_view(target).substr(kPrefix.size(), end - kPrefix.size()));
    if (fault == nullptr) {
        throw Refusal(kUnknownPath, "there is no such fault, pavonix-shop faults lists them");
    }
    request->target(target.substr(end));
    return fault;
}

} // namespace shop
