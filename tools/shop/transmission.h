// A reply on the wire: its pieces, and how the connection ends.
#pragma once

#include <boost/beast/http/message.hpp>
#include <boost/beast/http/string_body.hpp>

#include <chrono>
#include <string>
#include <vector>

namespace shop {

using Request = boost::beast::http::request<boost::beast::http::string_body>;
using Response = boost::beast::http::response<boost::beast::http::string_body>;

struct Piece {
    std::string bytes;
    std::chrono::milliseconds wait{0}; // before it, so that it arrives on its own
};

struct Transmission {
    enum class End {
        kClose,
        kReset,
        kSilence, // nothing more, until the device leaves or a minute is over
    };

    std::vector<Piece> pieces;
    End end = End::kClose;
};

// A reply as text, its head with the empty line.
struct ReplyText {
    std::string head;
    std::string body;
};

[[nodiscard]] ReplyText TextOf(const Response &response);

// The device reads head and first body bytes with one receive of 1024 bytes and
// never asks again for the rest of them: a good reply is one buffer and one write,
// so that the first segment is as full as it can be.
[[nodiscard]] Transmission AsOnePiece(const Response &response);

} // namespace shop
