#include "shop/faults/fault_table.h"

#include "shop/errors.h"
#include "shop/faults/fault_outcomes.h"
#include "shop/faults/spoiled_replies.h"
#include "shop/replies.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace shop {

namespace http = boost::beast::http;

namespace {

constexpr std::string_view kPrefix = "/fault/";

// The fault of that name as fault_outcomes.h describes it, without its reply.
Fault Described(const char *name)
{
    const auto *found = std::find_if(std::begin(kFaultOutcomes), std::end(kFaultOutcomes),
                                     [=](const FaultOutcome &one) { return std::string_view(one.name) == name; });
    if (found == std::end(kFaultOutcomes)) {
        throw std::logic_error(std::string("no outcome of fault ") + name);
    }
    return {found->name, found->does, found->download, found->sale, found->refusal, nullptr, nullptr};
}

Fault Spoiled(const char *name, std::function<Transmission(Response)> send)
{
    Fault fault = Described(name);
    fault.send = std::move(send);
    return fault;
}

// Sends the same bytes to every request.
Fault Bytes(const char *name, const Transmission &transmission)
{
    return Spoiled(name, [=](const Response &) { return transmission; });
}

// Refuses in the shop's place.
Fault Refused(const char *name, std::function<Response()> answer)
{
    Fault fault = Spoiled(name, AsOnePiece);
    fault.answer = std::move(answer);
    return fault;
}

Fault Refused(const ErrorKind &kind)
{
    const std::string status = std::to_string(kind.status), verdict = status + " code " + std::to_string(kind.code);
    return {"code-" + std::to_string(kind.code),
            std::string("refuses: ") + kind.text,
            status + " none",
            verdict,
            verdict,
            [kind] { return MakeErrorResponse(kind, kind.text); },
            AsOnePiece};
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
        Spoiled("head-apart", HeadApart),
        Spoiled("head-in-pieces", HeadInPieces),
        Spoiled("late", Late),
        Spoiled("slow", Slow),
        Spoiled("short", Short),
        Spoiled("long", Long),
        Spoiled("no-length", WithoutLength),
        Spoiled("chunked", Chunked),
        Spoiled("compressed", Compressed),
        Spoiled("long-head", LongHead),
        Spoiled("lower-case", LowerCase),
        Spoiled("hidden", HiddenHeaders),
        Bytes("silent", {{}, End::kSilence}),
        Bytes("nothing", {}),
        Bytes("reset", {{}, End::kReset}),
        Spoiled("reset-in-body", ResetInBody),
        Bytes("not-http", {{{"220 mail.example ESMTP\r\n"}}}),
        Bytes("tls", {{{{"\x15\x03\x01\x00\x02\x02\x46", 7}}}}),
        Spoiled("bare-line-feeds", BareLineFeeds),
        Spoiled("head-without-end", HeadWithoutEnd),
        Spoiled("interim", InterimFirst),
        Spoiled("sold-with-code", SoldWithCode),
        Refused("redirect", Redirection),
        Refused("code-0", [] { return Verdict("0", "not read", "The body is the message"); }),
        Refused("long-message", [=] { return Verdict("999", longMessage, ""); }),
        Refused("long-timestamp", LongTimestamp),
        Refused("utf-8-message",
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
