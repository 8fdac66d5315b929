// Sends a reply as its transmission says, and closes the connection.
#pragma once

#include "transmission.h"

#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/tcp_stream.hpp>

#include <array>
#include <memory>

namespace shop {

// Lives as long as one of its operations is under way.
class ReplySender : public std::enable_shared_from_this<ReplySender> {
public:
    ReplySender(boost::beast::tcp_stream stream, Transmission transmission);

    // Runs on the stream's executor, whichever thread calls.
    void Start();

private:
    void SendNext();
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
