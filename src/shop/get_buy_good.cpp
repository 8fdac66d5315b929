#include "http/reply_text.h"
#include "pavonix/pavonix.h"
#include "platform/code_pages.h"
#include "platform/export.h"
#include "shop/shop_call.h"

#include <cstddef>
#include <cstring>
#include <memory>

static_assert(sizeof(BuyGoodRequest) == 20 && offsetof(BuyGoodRequest, type) == 8 &&
              offsetof(BuyGoodRequest, id) == 12 && offsetof(BuyGoodRequest, force) == 16);
static_assert(offsetof(BuyGoodResult, errorCode) == 8 && offsetof(BuyGoodResult, message) == 12 &&
              offsetof(BuyGoodResult, serverTimestamp) == 524);
static_assert(offsetof(BuyGoodRoomyResult, message) == 12 && offsetof(BuyGoodRoomyResult, serverTimestamp) == 524);

namespace pavonix {

namespace {

constexpr std::int32_t kErrorNone = 0;         // the server says more in the body
constexpr std::int32_t kErrorClockIsOff = 906; // the server sends its own time

void AddFormNumber(HttpConnection *connection, const char *name, std::int32_t value)
{
    FixedText<256> text;
    text.AppendDecimal(value);
    connection->AddFormField(name, text.c_str());
}

// Adds the token, the form and its length. False when memory for the form runs out.
[[nodiscard]] bool AddPurchase(const CallIdentity &identity, const BuyGoodRequest &request, HttpConnection *connection)
{
    connection->AddHeader("User-Cert", identity.UserCert().c_str());
    AddFormNumber(connection, "type", request.type);
    AddFormNumber(connection, "id", request.id);
    AddFormNumber(connection, "force", request.force);
    const ZtString form = connection->GetFormBody();
    FixedText<16> length;
    length.AppendDecimal(form.length());
    connection->AddHeader("Content-Length", length.c_str());
    return form.complete();
}

// Writes a text of the reply, of fewer than kFirstReception characters, into the
// caller's record in its full length.
void WriteWide(const char *text, PavonixChar *target)
{
    const int length = static_cast<int>(std::strlen(text));
    const int units = platform::BytesToWide(platform::kAnsiCodePage, text, length, target, kFirstReception);
    target[units > 0 ? units : 0] = 0;
}

void WriteVerdict(const HttpConnection &connection, BuyGoodResult *result)
{
    const char *head = connection.GetHeadBuffer();
    const std::unique_ptr<char[]> code(GetHeaderValue(head, "X-Error-Code"));
    const std::unique_ptr<char[]> message(GetHeaderValue(head, "X-Error-Message"));
    result->errorCode = code == nullptr ? kErrorNone : ParseDecimal(code.get());
    if (message != nullptr) {
        WriteWide(message.get(), result->message);
    }
    if (result->errorCode == kErrorClockIsOff) {
        const std::unique_ptr<char[]> timestamp(GetHeaderValue(head, "X-Server-Timestamp"));
        if (timestamp != nullptr) {
            WriteWide(timestamp.get(), result->serverTimestamp);
        }
    } else if (result->errorCode == kErrorNone) {
        WriteWide(connection.GetBodyPrefix(), result->message);
    }
}

// Sells the good over the connection; returns what the exported call returns.
int Buy(const WideChar *profilePath, const BuyGoodRequest &request, BuyGoodResult *result, const WideChar *baseUrl,
        int port)
{
    HttpConnection connection; // before any early return: its destruction calls WSACleanup once on every path
    UrlText url;
    if (!ConvertBaseUrl(baseUrl, &url)) {
        return PAVONIX_FAILED;
    }
    const CallIdentity identity(profilePath);
    const bool whole = AddIdentity(identity, &connection) && AddPurchase(identity, request, &connection);
    ZtByteData reply; // not used: the connection keeps the reply
    if (!whole || connection.Post(url.c_str(), &reply, static_cast<std::uint32_t>(port)) == 0) {
        connection.Close();
        connection.Reset();
        return PAVONIX_FAILED;
    }
    const std::int32_t status = ReplyStatus(connection);
    if (status != PAVONIX_OK && result != nullptr) {
        WriteVerdict(connection, result);
    }
    connection.Reset();
    return status;
}

} // namespace

} // namespace pavonix

PAVONIX_EXPORT int PAVONIX_CALL GetBuyGood(const PavonixChar *profilePath, const BuyGoodRequest *request,
                                           BuyGoodResult *result, const PavonixChar *baseUrl, int port)
{
    return request == nullptr ? PAVONIX_FAILED : pavonix::Buy(profilePath, *request, result, baseUrl, port);
}
