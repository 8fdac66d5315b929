#include "shop/shop_call.h"

#include "http/find_text.h"
#include "platform/code_pages.h"

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
    const ZtString serial = identity.UserSerial();
    connection->SetUserAgent(identity.UserAgent());
    connection->AddHeader("User-Serial", serial.c_str());
    connection->AddHeader("User-ID", identity.UserId().c_str());
    return serial.complete();
}

std::int32_t ReplyStatus(const HttpConnection &connection)
{
    FixedText<kFirstReception + 1> statusLine;
    const ZtString head = connection.GetHead();
    statusLine.AppendN(head.c_str(), static_cast<std::size_t>(head.length()));
    const std::int32_t blank = FindText(statusLine.c_str(), " ", 0);
    if (blank < 0) {
        return 0;
    }
    FixedText<4> status;
    status.Append(statusLine.c_str() + blank + 1); // cut to three characters
    return ParseDecimal(status.c_str());
}

} // namespace pavonix
