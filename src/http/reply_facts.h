// The consequences of a reply's first bytes, shared by the tracing build and the
// tools so that both give the same diagnosis. Pure functions without allocation; the
// library itself does not use them.
#pragma once

#include "http/first_reception.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace pavonix {

// Why the library found no head in a reply.
enum class HeadFault {
    kNone,
    kNoReply,
    kTls,
    kNotHttp,
    kZeroByte,
    kBareLineFeeds,
    kBareCarriageReturns,
    kTooLong,
    kInPieces,
    kWithoutEnd,
};

// A fault's name and what is wrong, in one sentence.
struct FaultText {
    const char *name;
    const char *sentence;
};

constexpr FaultText TextOf(HeadFault fault)
{
    switch (fault) {
    case HeadFault::kNone:
        return {"none", "The head is complete."};
    case HeadFault::kNoReply:
        return {"no-reply", "There is no reply."};
    case HeadFault::kTls:
        return {"tls", "The port speaks TLS, not plain HTTP."};
    case HeadFault::kNotHttp:
        return {"not-http", "The reply does not start like HTTP."};
    case HeadFault::kZeroByte:
        return {"head-zero-byte", "The head contains a zero byte."};
    case HeadFault::kBareLineFeeds:
        return {"bare-line-feeds", "The head's lines end in a line feed without a carriage return."};
    case HeadFault::kBareCarriageReturns:
        return {"bare-carriage-returns", "The head's lines end in a carriage return without a line feed."};
    case HeadFault::kTooLong:
        return {"head-too-long", "The head, from status line to blank line, is longer than 1024 bytes."};
    case HeadFault::kInPieces:
        return {"head-in-pieces", "The first bytes to arrive do not hold the whole head."};
    case HeadFault::kWithoutEnd:
        break;
    }
    return {"head-without-end", "The head has no blank line at its end."};
}

// Decimal, as ParseDecimal reads it.
constexpr std::int32_t NumberIn(std::string_view text)
{
    const auto isSpace = [](char letter) { return letter == ' ' || (letter >= '\t' && letter <= '\r'); };
    while (!text.empty() && isSpace(text.front())) {
        text.remove_prefix(1);
    }
    const bool negative = text.starts_with('-');
    text.remove_prefix(negative || text.starts_with('+') ? 1 : 0);
    constexpr std::int64_t kBeyond = std::int64_t{1} << 31;
    std::int64_t value = 0;
    for (std::size_t i = 0; i < text.size() && text[i] >= '0' && text[i] <= '9' && value < kBeyond; ++i) {
        value = value * 10 + (text[i] - '0');
    }
    value = negative ? -std::min(value, kBeyond) : std::min(value, kBeyond - 1);
    return static_cast<std::int32_t>(value);
}

// A TLS alert or handshake record, version 3.x.
constexpr bool BeginsLikeTls(std::string_view reply)
{
    return reply.size() >= 2 && (reply[0] == 0x15 || reply[0] == 0x16) && reply[1] == 3;
}

// Also true of too few bytes to know. Empty lines before the status line do no harm.
constexpr bool BeginsLikeHttp(std::string_view reply)
{
    constexpr std::string_view kName = "HTTP/";
    reply.remove_prefix(std::min(reply.find_first_not_of("\r\n"), reply.size()));
    return reply.starts_with(kName) || kName.starts_with(reply);
}

// reply: the bytes seen so far. atOnce: the number of them in the first reception.
// ended: no more bytes follow.
constexpr HeadFault FindHeadFault(std::string_view reply, std::size_t atOnce, bool ended)
{
    constexpr std::string_view kEnd = "\r\n\r\n";
    const std::size_t first = std::min({atOnce, reply.size(), std::size_t{kFirstReception}});
    const std::size_t end = reply.find(kEnd);
    const std::size_t zero = reply.find('\0');
    const std::size_t feeds = std::min(reply.find("\n\n"), reply.find("\n\r\n"));
    const std::size_t returns = reply.find("\r\r");
    if (end != reply.npos && end < zero && end + kEnd.size() <= first) {
        return HeadFault::kNone;
    }
    if (reply.empty()) {
        return HeadFault::kNoReply;
    }
    if (!BeginsLikeHttp(reply)) {
        return BeginsLikeTls(reply) ? HeadFault::kTls : HeadFault::kNotHttp;
    }
    if (std::min(feeds, returns) < std::min({end, zero, std::size_t{kFirstReception}})) {
        return feeds < returns ? HeadFault::kBareLineFeeds : HeadFault::kBareCarriageReturns;
    }
    if (zero < std::min(end, first)) {
        return HeadFault::kZeroByte;
    }
    if (end == reply.npos ? reply.size() >= kFirstReception : end + kEnd.size() > kFirstReception) {
        return HeadFault::kTooLong;
    }
    return end == reply.npos && ended ? HeadFault::kWithoutEnd : HeadFault::kInPieces;
}

// The part of a body that the library takes from the first reception. headLength and
// announced: as the library has read them. arrived: bytes of the first reception.
struct BodyStart {
    constexpr BodyStart(std::size_t headLength, std::uint32_t announced, std::size_t arrived)
        : taken(std::min<std::size_t>(announced == 0 ? kFirstReception : announced, kFirstReception - headLength)),
          bytes(arrived - std::min(headLength, arrived)),
          zeros(taken - std::min(bytes, taken))
    {
    }

    std::size_t taken; // body bytes that the library takes from the first reception
    std::size_t bytes; // body bytes that arrived in it
    std::size_t zeros; // the last ones of `taken`, which had not arrived
};

// The library's view of a reply. Names are case-sensitive and found anywhere; the first
// match counts. All texts end at the first zero byte.
class ReplyFacts {
public:
    // received: the bytes of the first reception, which must outlive the object.
    constexpr explicit ReplyFacts(std::string_view received)
        : received_(received.substr(0, kFirstReception)), text_(received_.substr(0, received_.find('\0')))
    {
        constexpr std::string_view kEnd = "\r\n\r\n";
        const std::size_t end = text_.find(kEnd);
        headIsWhole_ = end != text_.npos;
        headLength_ = headIsWhole_ ? end + kEnd.size() : kHeadLengthWithoutEnd;
        const std::string_view head = text_.substr(0, headLength_);
        announced_ = static_cast<std::uint32_t>(NumberIn(ValueIn(head, "Content-Length").value_or("")));
        status_ = StatusOf(head);
        if (announced_ != 0) {
            text_ = text_.substr(0, headLength_ + bodyStart().taken);
        }
    }

    // The call's result; 0 for no status.
    constexpr int status() const { return status_; }
    constexpr bool headIsWhole() const { return headIsWhole_; }
    // Including the blank line; kHeadLengthWithoutEnd if the head is not whole.
    constexpr std::size_t headLength() const { return headLength_; }
    // Content-Length; 0 for none.
    constexpr std::uint32_t announced() const { return announced_; }
    constexpr BodyStart bodyStart() const { return {headLength_, announced_, received_.size()}; }
    // Body bytes that are stored as zeros because they did not arrive at once.
    constexpr std::size_t zeros() const { return bodyStart().zeros; }

    // The value of a purchase's header.
    [[nodiscard]] constexpr std::optional<std::string_view> Verdict(std::string_view name) const
    {
        return ValueIn(text_, name);
    }

    // The whole line in which the library finds a name.
    [[nodiscard]] constexpr std::optional<std::string_view> LineOf(std::string_view name) const
    {
        const std::size_t found = text_.find(name);
        if (found == text_.npos) {
            return std::nullopt;
        }
        const std::size_t start = text_.substr(0, found).rfind('\n') + 1; // 0 in the first line
        return text_.substr(start, text_.find("\r\n", found) - start);
    }

private:
    static constexpr std::optional<std::string_view> ValueIn(std::string_view text, std::string_view name)
    {
        const std::size_t found = std::min(text.find(name), text.size());
        const std::size_t colon = text.find(':', found);
        const std::size_t lineEnd = text.find("\r\n", found);
        if (colon == text.npos || lineEnd == text.npos || lineEnd <= colon) {
            return std::nullopt;
        }
        return text.substr(colon + 1, lineEnd - colon - 1);
    }

    static constexpr int StatusOf(std::string_view head)
    {
        head.remove_prefix(std::min(head.find_first_not_of("\r\n"), head.size()));
        const std::size_t space = head.find_first_of(" \r\n");
        return space == head.npos || head[space] != ' ' ? 0 : NumberIn(head.substr(space + 1, 3));
    }

    std::string_view received_;
    std::string_view text_; // in which names are looked up
    bool headIsWhole_ = false;
    std::size_t headLength_ = 0;
    std::uint32_t announced_ = 0;
    int status_ = 0;
};

} // namespace pavonix
