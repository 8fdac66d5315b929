// HttpConnection: one GET or POST from start to the reply's first bytes.
#include "http/http_connection.h"
#include "http/reply_text.h"

namespace pavonix {

namespace {

// Any non-zero value switches TCP keep-alive on; this is the one that is passed.
constexpr std::int32_t kKeepAliveValue = 2000000;

} // namespace

int HttpConnection::Get(const char *url, ZtByteData *reply, std::uint32_t port)
{
    return Transact("GET", url, reply, port);
}

int HttpConnection::Post(const char *url, ZtByteData *reply, std::uint32_t port)
{
    return Transact("POST", url, reply, port);
}

int HttpConnection::Transact(const char *method, const char *url, ZtByteData *reply, std::uint32_t port)
{
    const UrlParts parts = SplitUrl(url);
    if (!parts.valid) {
        return 0;
    }
    Compose(method, parts, range_, formBody_);
    // a host that lost a piece for lack of memory would be another one
    if (StartSocket() == 0 || !host_.complete() || Connect(host_.c_str(), port) == 0) {
        Close();
        return 0;
    }
    const int sent = SendText(request_);
    platform::SetSocketOption(socket_, platform::kSolSocket, platform::kSoKeepAlive, &kKeepAliveValue,
                              sizeof kKeepAliveValue);
    if (sent == 0) {
        return 0; // no reply will arrive, and waiting has no time-out
    }
    ReceiveHead();
    const std::uint32_t count =
        contentLength_ == 0 || contentLength_ > kFirstReception ? kFirstReception : contentLength_;
    CopyResponsePrefix(headArea_, reply, static_cast<std::int32_t>(count));
    return 1;
}

} // namespace pavonix
