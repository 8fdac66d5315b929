// Sends a reply as its transmission says, and closes the connection.
#pragma once

#include "transmission.h"

#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/tcp_stream.hpp>

#include <array>
#include <memory>

namespace shop {

// Writes as many of the bytes as the system takes at once, mostly all, which saves a turn of the stream's thread.
// Returns their number.
[[nodiscard]] std::size_t WriteNow(boost::beast::tcp_stream &stream, const std::string &bytes);

// Lives as long as one of its operations is under way.
class ReplySender : public std::enable_shared_from_this<ReplySender> {
public:
    ReplySender(boost::beast::tcp_stream stream, Transmission transmission);

    // Sends the rest.
    void Start();

private:
    void Write();
    void Finish();
    void Drain();

    boost::beast::tcp_stream stream_;
    Transmission transmission_;
    std::size_t next_ = 0;
    boost::asio::steady_timer pause_;
    std::array<char, 4096> dropped_;
};

} // namespace shop
