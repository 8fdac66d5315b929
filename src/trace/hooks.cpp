#include "trace/hooks.h"

#include "http/reply_facts.h"
#include "trace/call_state.h"
#include "trace/line.h"

#include <string_view>

namespace pavonix::trace {

namespace {

// The bytes of the file that will be zeros because they arrived too late.
void WriteZeros(const BodyStart &body)
{
    const auto bytes = static_cast<std::int64_t>(body.bytes);
    const auto taken = static_cast<std::int64_t>(body.taken);
    if (body.zeros == 0) {
        return;
    }
    if (bytes == 0) {
        Line("the head arrived without body bytes: the first ").Number(taken).Text(" bytes of the file are zeros");
        return;
    }
    Line line("only ");
    line.Number(bytes).Text(" body bytes arrived with the head: bytes ").Number(bytes + 1).Text(" to ");
    line.Number(taken).Text(" of the file are zeros");
}

} // namespace

void WriteProfile(const ProfileFacts &profile)
{
    Line line("profile: User-Id ");
    line.Number(profile.userId);
    line.Text(", User-Serial ").Number(profile.serialLength).Text(" characters");
    line.Text(", User-Agent ").Number(profile.userAgentLength).Text(" characters");
    line.Text(", Public-Key ").Number(profile.publicKeyLength).Text(" characters");
    line.Text(", Private-Key ").Number(profile.privateKeyLength).Text(" characters");
}

void WriteEngineLog(const char *log)
{
    std::string_view rest(log);
    while (!rest.empty()) {
        std::string_view entry = rest.substr(0, rest.find_first_of("\r\n"));
        rest.remove_prefix(entry.size());
        rest.remove_prefix(rest.find_first_not_of("\r\n") == rest.npos ? rest.size() : rest.find_first_not_of("\r\n"));
        // the ciphertext is the token itself
        constexpr std::string_view kToken = "exptmodOutput:";
        const std::size_t token = entry.find(kToken);
        const bool isToken = token != entry.npos;
        Line line("engine: ");
        line.Bytes(entry.substr(0, isToken ? token + kToken.size() : entry.size())).Text(isToken ? " (the token)" : "");
    }
}

void WriteReply(const char *start, std::uint32_t headLength, std::uint32_t contentLength)
{
    state.replied = true;
    const auto received = static_cast<std::size_t>(state.firstReceived > 0 ? state.firstReceived : 0);
    if (headLength == kHeadLengthWithoutEnd) {
        // whether more bytes follow, and which, is not known here
        const FaultText fault = TextOf(FindHeadFault({start, received}, received, false));
        Line("no head: ").Text(fault.name).Text(": ").Text(fault.sentence);
        return;
    }
    const BodyStart body(headLength, contentLength, received);
    Line("head of ")
        .Number(headLength)
        .Text(" bytes, Content-Length ")
        .Number(contentLength)
        .Text(", ")
        .Number(static_cast<std::int64_t>(body.bytes))
        .Text(" body bytes arrived with it");
    if (!state.download) {
        return;
    }
    if (contentLength == 0) {
        Line("no usable Content-Length: the file gets the ")
            .Number(static_cast<std::int64_t>(body.taken))
            .Text(" bytes after the head, filled up with zeros, and no more");
    }
    WriteZeros(body);
}

} // namespace pavonix::trace
