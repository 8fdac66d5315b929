#include "trace/hooks.h"

#include "http/http_connection.h"
#include "profile/device_profile.h"
#include "rsa/cipher/zt_rsa.h"
#include "trace/call_state.h"
#include "trace/line.h"

#include <string_view>

namespace pavonix::trace {

namespace {

void TellLength(Line *line, const char *name, const ZtString &value)
{
    line->Text(name).Number(value.length()).Text(" characters");
}

// Why a first reception has no head, in the order in which one can be sure.
const char *WhyNoHead(std::string_view received)
{
    if (received.empty()) {
        return "there was no reply";
    }
    if (received[0] == '\x15' || received[0] == '\x16') {
        return "the server speaks TLS at this port; the library does not";
    }
    if (received.substr(0, 5) != "HTTP/") {
        return "what came is not HTTP";
    }
    if (received.find("\n\n") != received.npos) {
        return "its lines end in bare line feeds, not in CR LF";
    }
    return received.size() == kFirstReception ? "the head is longer than 1024 bytes" : "the head came in pieces";
}

// Which bytes of the file will be zeros, because they were not there in time.
void TellZeros(std::int64_t came, std::int64_t counted)
{
    if (came == 0 && counted > 0) {
        Line("the head came without body bytes: the first ").Number(counted).Text(" bytes of the file are zeros");
    } else if (came < counted) {
        Line("only ")
            .Number(came)
            .Text(" body bytes came with the head: bytes ")
            .Number(came + 1)
            .Text(" to ")
            .Number(counted)
            .Text(" of the file are zeros");
    }
}

} // namespace

void TellProfile(const DeviceProfile &profile)
{
    Line line("profile: User-Id ");
    line.Number(profile.userId());
    TellLength(&line, ", User-Serial ", profile.userSerial());
    TellLength(&line, ", User-Agent ", profile.userAgent());
    TellLength(&line, ", Public-Key ", profile.publicKeyXml());
    TellLength(&line, ", Private-Key ", profile.privateKeyXml());
}

void TellEngine(ZtRsa *rsa)
{
    ZtString log;
    rsa->get_LastErrorText(&log);
    std::string_view rest(log.c_str(), static_cast<std::size_t>(log.length()));
    while (!rest.empty()) {
        std::string_view entry = rest.substr(0, rest.find_first_of("\r\n"));
        rest.remove_prefix(entry.size());
        rest.remove_prefix(rest.find_first_not_of("\r\n") == rest.npos ? rest.size() : rest.find_first_not_of("\r\n"));
        // the ciphertext is the token itself
        constexpr std::string_view kToken = "exptmodOutput:";
        const std::size_t token = entry.find(kToken);
        const bool isToken = token != entry.npos;
        Line line("engine: ");
        line.Bytes(entry.data(), isToken ? token + kToken.size() : entry.size()).Text(isToken ? " (the token)" : "");
    }
}

void TellReply(const HttpConnection &connection)
{
    constexpr std::uint32_t kNoHead = 2; // what the length comes to without a blank line
    state.replied = true;
    const std::int64_t received = state.firstReceived > 0 ? state.firstReceived : 0;
    const std::uint32_t head = connection.GetHeadLength();
    if (head == kNoHead) {
        Line("no head: ").Text(WhyNoHead({connection.GetHeadBuffer(), static_cast<std::size_t>(received)}));
        return;
    }
    const std::uint32_t length = connection.GetContentLength();
    const std::uint32_t room = kFirstReception - head;
    Line("head of ")
        .Number(head)
        .Text(" bytes, Content-Length ")
        .Number(length)
        .Text(", ")
        .Number(received - head)
        .Text(" body bytes came with it");
    if (!state.download) {
        return;
    }
    if (length == 0) {
        Line("no usable Content-Length: the file gets the ")
            .Number(room)
            .Text(" bytes behind the head, filled up with zeros, and no more");
    }
    TellZeros(received - head, length == 0 || length > room ? room : length);
}

} // namespace pavonix::trace
