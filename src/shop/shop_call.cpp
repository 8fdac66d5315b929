#include "shop/shop_call.h"

#include "http/reply_text.h"
#include "platform/code_pages.h"
#include "trace/hooks.h"

namespace pavonix {

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
        WriteReply(connection.GetHeadBuffer(), connection.GetHeadLength(), connection.GetContentLength()));
    return ParseStatus(connection.head());
}

} // namespace pavonix
