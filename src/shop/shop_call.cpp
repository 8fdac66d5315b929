#include "shop/shop_call.h"

#include "platform/code_pages.h"
#include "trace/hooks.h"

namespace pavonix {

namespace {

bool IsLineEnd(char c)
{
    return c == '\r' || c == '\n';
}

} // namespace

bool ConvertBaseUrl(const WideChar *baseUrl, UrlText *url)
{
    if (baseUrl == nullptr) {
        return false;
    }
    char bytes[256];
    const int length =
        platform::WideToBytes(platform::kAnsiCodePage, baseUrl, WideLength(baseUrl), bytes, sizeof bytes, nullptr);
    if (length <= 0) {
        return false;
    }
    url->AppendN(bytes, static_cast<std::size_t>(length));
    return url->fits();
}

bool AddIdentity(const CallIdentity &identity, HttpConnection *connection)
{
    const ZtString &serial = identity.UserSerial();
    connection->SetUserAgent(identity.UserAgent());
    connection->AddHeader("User-Serial", serial.c_str());
    connection->AddHeader("User-ID", identity.UserId().c_str());
    return serial.complete();
}

std::int32_t ReplyStatus(const HttpConnection &connection)
{
    PAVONIX_TRACE_HOOK(
        TellReply(connection.GetHeadBuffer(), connection.GetHeadLength(), connection.GetContentLength()));
    FixedText<kFirstReception + 1> copy;
    const ZtString head = connection.GetHead();
    copy.AppendN(head.c_str(), static_cast<std::size_t>(head.length()));
    const char *place = copy.c_str();
    while (IsLineEnd(*place)) {
        ++place;
    }
    while (*place != 0 && *place != ' ' && !IsLineEnd(*place)) {
        ++place;
    }
    if (*place != ' ') {
        return 0; // a blank in a later line tells nothing of the status
    }
    FixedText<4> status;
    status.Append(place + 1); // cut to three characters
    return ParseDecimal(status.c_str());
}

} // namespace pavonix
