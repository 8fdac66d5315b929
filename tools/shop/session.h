// One connection: requests in, replies out.
#pragma once

#include "connections.h"
#include "shop/faults/fault_table.h"
#include "shop/window/window.h"

#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/parser.hpp>

#include <array>
#include <atomic>
#include <memory>
#include <set>

namespace shop {

// Shared by all connections.
struct ServerContext {
    ShopState &state;
    Connections &connections;
    Window &window;
    const Fault *fault;                            // of every reply; null for none
    std::set<boost::asio::ip::address> watchers{}; // may read /health and /metrics; loopback always may
    std::chrono::seconds keepAlive{0};             // for the next request; 0 closes after each reply
    std::atomic<int> exchangesUnderWay = 0;
    std::atomic<bool> stopping = false;
};

// Lives as long as one of its operations is under way. The thread of its network receives requests; a thread of the
// connections makes the reply and sends as much as the system takes at once. Never both at the same time.
class Session : public std::enable_shared_from_this<Session> {
public:
    Session(boost::asio::ip::tcp::socket socket, ServerContext &context);

    void Start();

private:
    void AwaitRequest();
    void Read();
    void OnRead(boost::beast::error_code error, std::size_t count);
    void Parse(bool ended);
    void Handle();
    void HandleByShop(const Fault *fault);
    [[nodiscard]] bool MayWatch() const;
    void Send(const Request *request, Response response, const Fault *fault);
    void SendAndStay(std::string reply);
    void ReadNext();
    [[nodiscard]] std::string TakeReceived();
    void Show(const Request *request, const Response &response, const Fault *fault, const Transmission &sent);

    boost::beast::tcp_stream stream_;
    boost::asio::ip::address peer_;
    ServerContext &context_;
    std::unique_ptr<boost::beast::http::request_parser<boost::beast::http::string_body>> parser_; // of one request
    Request request_;
    std::chrono::steady_clock::time_point since_;
    std::array<char, 4096> chunk_;
    std::string received_; // from the beginning of the request
    std::size_t parsed_ = 0;
    std::string reply_;
};

} // namespace shop
