#include "shop/faults/spoiled_replies.h"

#include "shop/faults/gzip.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/erase.hpp>

#include <sstream>

namespace shop {

namespace http = boost::beast::http;
using std::chrono::milliseconds;

namespace {

// Long enough for the other side to receive the bytes before.
constexpr milliseconds kApart{300};
constexpr milliseconds kLate{6000};
constexpr milliseconds kDrip{50};
constexpr std::size_t kFirstReception = 1024;
constexpr std::size_t kMissing = 100;

std::string WholeText(const Response &response)
{
    const ReplyText reply = TextOf(response);
    return reply.head + reply.body;
}

} // namespace

Transmission HeadApart(const Response &response)
{
    const ReplyText reply = TextOf(response);
    return {.pieces = {{reply.head}, {reply.body, kApart}}};
}

Transmission HeadInPieces(const Response &response)
{
    const std::string reply = WholeText(response);
    const std::size_t statusLine = reply.find('\n') + 1;
    return {.pieces = {{reply.substr(0, statusLine)}, {reply.substr(statusLine), kApart}}};
}

Transmission Late(const Response &response)
{
    return {.pieces = {{WholeText(response), kLate}}};
}

Transmission Slow(const Response &response)
{
    constexpr std::size_t kDrop = 100;
    const std::string reply = WholeText(response);
    Transmission transmission{.pieces = {{reply.substr(0, kFirstReception)}}};
    for (std::size_t at = kFirstReception; at < reply.size(); at += kDrop) {
        transmission.pieces.push_back({reply.substr(at, kDrop), kDrip});
    }
    return transmission;
}

Transmission Short(const Response &response)
{
    const ReplyText reply = TextOf(response);
    return {.pieces = {{reply.head + reply.body.substr(0, reply.body.size() - std::min(kMissing, reply.body.size()))}}};
}

Transmission Long(const Response &response)
{
    return {.pieces = {{WholeText(response) + std::string(kMissing, '!')}}};
}

Transmission WithoutLength(Response response)
{
    response.erase(http::field::content_length);
    return AsOnePiece(response);
}

Transmission Chunked(Response response)
{
    constexpr std::size_t kChunk = 512;
    const std::string body = std::move(response.body());
    response.erase(http::field::content_length);
    response.set(http::field::transfer_encoding, "chunked");
    response.body().clear();
    std::ostringstream chunks;
    for (std::size_t at = 0; at < body.size(); at += kChunk) {
        const std::string chunk = body.substr(at, kChunk);
        chunks << std::hex << chunk.size() << "\r\n" << chunk << "\r\n";
    }
    chunks << "0\r\n\r\n";
    response.body() = chunks.str();
    return AsOnePiece(response);
}

Transmission Compressed(Response response)
{
    response.body() = Gzip(response.body());
    response.set(http::field::content_encoding, "gzip");
    response.prepare_payload();
    return AsOnePiece(response);
}

Transmission LongHead(Response response)
{
    response.set(http::field::set_cookie, "session=" + std::string(kFirstReception, 'c'));
    return AsOnePiece(response);
}

Transmission LowerCase(const Response &response)
{
    Response lower;
    lower.result(response.result());
    for (const auto &field : response) {
        lower.set(boost::to_lower_copy(std::string(field.name_string())), field.value());
    }
    lower.body() = response.body();
    return AsOnePiece(lower);
}

Transmission HiddenHeaders(const Response &response)
{
    ReplyText reply = TextOf(response);
    reply.head.insert(reply.head.find('\n') + 1, "Access-Control-Expose-Headers: Content-Length, X-Error-Code, "
                                                 "X-Error-Message, X-Server-Timestamp\r\n");
    return {.pieces = {{reply.head + reply.body}}};
}

Transmission BareLineFeeds(const Response &response)
{
    const ReplyText reply = TextOf(response);
    return {.pieces = {{boost::erase_all_copy(reply.head, "\r") + reply.body}}};
}

Transmission HeadWithoutEnd(const Response &response)
{
    const std::string head = TextOf(response).head;
    return {.pieces = {{head.substr(0, head.size() - 2)}}};
}

Transmission InterimFirst(const Response &response)
{
    return {.pieces = {{"HTTP/1.1 100 Continue\r\n\r\n"}, {WholeText(response), kApart}}};
}

Transmission ResetInBody(const Response &response)
{
    const ReplyText reply = TextOf(response);
    const std::size_t sent = std::max(reply.head.size() + reply.body.size() / 2, kFirstReception);
    // The last piece is empty: only its wait counts, so that the reset overtakes nothing.
    return {.pieces = {{(reply.head + reply.body).substr(0, sent)}, {"", kApart}}, .end = Transmission::End::kReset};
}

Transmission SoldWithCode(Response response)
{
    response.set("X-Error-Code", "909");
    return AsOnePiece(response);
}

} // namespace shop
