// HttpConnection: start-up, connect, send, receive, close, reset.
#include "http/find_text.h"
#include "http/http_connection.h"
#include "rsa/text/fixed_text.h"

#include <cstring>
#include <initializer_list>

namespace pavonix {

namespace {

constexpr std::uint16_t kWinsock22 = 0x0202;
constexpr int kAfInet = 2;
constexpr int kSockStream = 1;
constexpr int kIpProtoTcp = 6;

} // namespace

HttpConnection::~HttpConnection()
{
    // Calls WSACleanup once more if Close has run already. That is intended: each
    // connection object ends with one WSACleanup in any case.
    Close();
}

int HttpConnection::StartSocket()
{
    if (connected_ != 0) {
        return 1;
    }
    std::uint16_t granted = 0;
    if (platform::StartWinsock(kWinsock22, &granted) != 0) {
        return 0;
    }
    if ((granted & 0xFF) != 2) {
        platform::CleanupWinsock();
        return 0;
    }
    socket_ = platform::OpenSocket(kAfInet, kSockStream, kIpProtoTcp);
    if (socket_ == platform::kInvalidSocket) {
        platform::CleanupWinsock();
        return 0;
    }
    return 1;
}

int HttpConnection::Connect(const char *host, std::uint32_t port)
{
    if (host == nullptr) {
        return 0;
    }
    if (connected_ != 0) {
        return 1;
    }
    const std::int32_t colon = FindText(host, ":", 0);
    ZtString name;
    name.AppendN(host, colon >= 0 ? colon : static_cast<std::int32_t>(std::strlen(host)));
    hostEntry_ = name.complete() ? platform::ResolveHost(name.c_str()) : nullptr;
    if (hostEntry_ == nullptr) {
        return 0;
    }
    const std::uint8_t *b = hostEntry_->firstAddress;
    const platform::SocketAddress address = {
        kAfInet, {static_cast<std::uint8_t>(port >> 8), static_cast<std::uint8_t>(port)}, {b[0], b[1], b[2], b[3]}, {}};
    FixedText<sizeof peerAddress_> dotted;
    dotted.AppendDecimal(b[0]).Append(".").AppendDecimal(b[1]).Append(".");
    dotted.AppendDecimal(b[2]).Append(".").AppendDecimal(b[3]);
    std::memcpy(peerAddress_, dotted.c_str(), static_cast<std::size_t>(dotted.length()) + 1);
    if (platform::ConnectSocket(socket_, &address, sizeof address) != 0) {
        return 0;
    }
    connected_ = 1;
    port_ = port;
    return 1;
}

int HttpConnection::Send(ZtString text)
{
    return SendText(text);
}

int HttpConnection::SendText(const ZtString &text)
{
    if (!text.complete()) {
        return 0; // a request that lost a piece could ask for something else
    }
    return platform::SendSocket(socket_, text.c_str(), text.length()) == platform::kSocketError ? 0 : 1;
}

int HttpConnection::Receive(char *buffer, int length)
{
    if (connected_ == 0) {
        return 0;
    }
    const int received = platform::ReceiveSocket(socket_, buffer, length);
    return received < 1 ? -1 : received;
}

int HttpConnection::Close()
{
    if (socket_ != 0 && platform::CloseSocket(socket_) == platform::kSocketError) {
        return 0;
    }
    platform::CleanupWinsock();
    socket_ = 0;
    connected_ = 0;
    return 1;
}

void HttpConnection::Reset()
{
    connected_ = 0;
    headReceived_ = 0;
    headLength_ = 0;
    contentLength_ = 0;
    port_ = 0;
    for (ZtString *text : {&request_, &head_, &path_, &host_, &userAgent_, &formBody_, &contentType_, &range_}) {
        text->Clear(); // all but the accept text
    }
    headers_.Clear();
    std::memset(headArea_, 0, sizeof headArea_);
    std::memset(bodyPrefix_, 0, sizeof bodyPrefix_);
}

} // namespace pavonix
