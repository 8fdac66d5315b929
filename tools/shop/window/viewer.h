// A browser that watches the shop: server-sent events over one open connection.
#pragma once

#include <boost/beast/core/tcp_stream.hpp>

#include <array>
#include <memory>
#include <string>
#include <string_view>

namespace shop {

// Lives as long as its connection, on the executor of its stream; any thread may call it.
class Viewer : public std::enable_shared_from_this<Viewer> {
public:
    explicit Viewer(boost::beast::tcp_stream stream) : stream_(std::move(stream)) {}

    // Sends the reply's head.
    void Start();

    // Sends an event. One that finds too much unsent is dropped: a browser that is
    // asleep costs the shop no memory.
    void Send(std::string_view name, std::string_view html);

private:
    void Queue(std::string text);
    void Write();
    void Watch();

    boost::beast::tcp_stream stream_;
    std::string waiting_;
    std::string underWay_;
    std::array<char, 64> dropped_;
};

} // namespace shop
