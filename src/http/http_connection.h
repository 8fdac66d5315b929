// The HTTP/1.1 client of one call: one TCP connection, one request, one reply.
#pragma once

#include "http/first_reception.h"
#include "http/url.h"
#include "platform/sockets.h"
#include "rsa/text/string_buffer.h"
#include "rsa/text/zt_byte_data.h"
#include "rsa/text/zt_string.h"

#include <cstdint>
#include <string_view>

namespace pavonix {

// Operations return 1 for success and 0 for failure unless stated otherwise, without an
// error text. Every socket call blocks without a time-out. An object
// belongs to one thread.
//
// Order of use: SetUserAgent, AddHeader, AddFormField as needed, then Get or Post; if
// that returned 1, the reply's accessors and Receive; then Close or destruction.
class HttpConnection {
public:
    HttpConnection() = default;
    virtual ~HttpConnection();
    HttpConnection(const HttpConnection &) = delete;
    HttpConnection &operator=(const HttpConnection &) = delete;

    // --- Request (http_request.cpp). All texts are NUL-terminated, 8-bit, in the
    // ANSI code page; only form values are escaped; nothing is trimmed or checked.

    void SetUserAgent(const ZtString &userAgent) { userAgent_ = userAgent; }
    // Adds the line "name: value" in call order; a null argument adds nothing.
    void AddHeader(const char *name, const char *value);
    // Adds the field "name=value", the value escaped; a null argument adds nothing.
    void AddFormField(const char *name, const char *value);
    ZtString GetFormBody() const { return formBody_; }
    ZtString GetRange() const { return range_; } // unused by the three calls, which always request the whole body
    // The host (with its port suffix) and the request target of a URL.
    ZtString ExtractHost(const UrlParts &url);
    ZtString ExtractPath(const UrlParts &url);
    // The whole request, head and body (RFC 9112 message format).
    ZtString ComposeRequest(const char *method, const UrlParts &url, ZtString range, ZtString body);
    // The same with the object's own range and form. `flag` is part of the interface
    // and has no effect.
    ZtString BuildRequest(const char *method, const UrlParts &url, std::uint32_t flag);

    // --- Transactions (http_transaction.cpp).

    // Sends one request to the URL's host on the low 16 bits of `port` and receives
    // the reply's start, which it also copies to `reply`. 0 when the URL is malformed,
    // nothing was sent, or memory for the whole request ran out.
    int Get(const char *url, ZtByteData *reply, std::uint32_t port);
    int Post(const char *url, ZtByteData *reply, std::uint32_t port);

    // --- Reply (http_reply.cpp).

    // Receives once and separates head and body prefix. The byte count is not kept:
    // bytes that did not arrive are zeros.
    const char *ReceiveHead();
    std::string_view head() const { return {head_.c_str(), static_cast<std::size_t>(head_.length())}; }
    ZtString GetHead() const { return head_; }                        // status line to blank line
    const char *GetHeadBuffer() const { return headArea_; }           // head and held body bytes
    const char *GetBodyPrefix() const { return bodyPrefix_; }         // held body bytes
    std::uint32_t GetHeadLength() const { return headLength_; }       // bytes, blank line included
    std::uint32_t GetContentLength() const { return contentLength_; } // 0 when absent

    // --- Socket (http_socket.cpp).

    int StartSocket();
    // `host` may carry ":port", which is ignored.
    int Connect(const char *host, std::uint32_t port);
    // One send of the whole text. A text that is incomplete because memory ran out is
    // not sent.
    int Send(ZtString text);
    // One receive: the byte count, 0 when not connected, -1 at the end of the
    // stream or on an error.
    int Receive(char *buffer, int length);
    // 0 when the socket could not be closed; everything then stays as it was.
    int Close();
    // Empties the object for reuse. An open socket stays open.
    void Reset();
    platform::Socket socket() const { return socket_; } // 0: none
    bool connected() const { return connected_ != 0; }

private:
    void Compose(const char *method, const UrlParts &url, const ZtString &range, const ZtString &body);
    int SendText(const ZtString &text);
    int Transact(const char *method, const char *url, ZtByteData *reply, std::uint32_t port);

    ZtString request_;
    ZtString head_;
    ZtString path_;
    ZtString host_;
    ZtString userAgent_;   // empty: the built-in default
    StringBuffer headers_; // lines joined by CR LF, none at the end
    ZtString accept_;      // never set: the request says "*/*"
    ZtString formBody_;
    ZtString contentType_; // never set: the request names the form type
    ZtString range_;       // never set: the request has no Range line
    // One byte more than is received, so that a full area is still NUL-terminated.
    char headArea_[kFirstReception + 1] = {};
    char bodyPrefix_[kFirstReception + 1] = {};
    platform::Socket socket_ = 0; // 0: none
    const platform::HostEntry *hostEntry_ = nullptr;
    char peerAddress_[256]; // dotted IPv4; this and port_ are only read in a debugger
    std::uint8_t connected_ = 0;
    std::uint8_t headReceived_ = 0; // never set: each transaction receives its own head
    std::uint32_t headLength_ = 0;
    std::uint32_t contentLength_ = 0;
    std::uint32_t port_ = 0;
};

} // namespace pavonix
