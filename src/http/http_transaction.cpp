// HttpConnection: one GET or POST from start to the reply's first bytes.
#include "http/http_connection.h"
#include "http/reply_text.h"

namespace pavonix {

namespace {

// Any non-zero value switches TCP keep-alive on; this one is what is sent.
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
    const ZtString host = ExtractHost(parts);
    // a host that lost its text would be another one
    if (StartSocket() == 0 || !host.complete() || Connect(host.c_str(), port) == 0) {
        Close();
        return 0;
    }
    BuildRequest(method, parts, 0);
    const int sent = Send(request_);
    platform::SetSocketOption(socket_, platform::kSolSocket, platform::kSoKeepAlive, &kKeepAliveValue,
                              sizeof kKeepAliveValue);
    if (sent == 0) {
        return 0; // nobody will answer, and waiting has no time-out
    }
    ReceiveHead();
    const std::uint32_t count =
        contentLength_ == 0 || contentLength_ > kFirstReception ? kFirstReception : contentLength_;
    CopyResponsePrefix(headArea_, reply, static_cast<std::int32_t>(count));
    return 1;
}

} // namespace pavonix
