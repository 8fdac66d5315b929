// One connection: a request in, a reply out.
#pragma once

#include "shop/faults/fault_table.h"
#include "shop.h"
#include "shop/window/window.h"

#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/parser.hpp>

#include <array>
#include <memory>

namespace shop {

// What all connections share.
struct ServerContext {
    Shop &shop;
    Window &window;
    const Fault *fault; // of every reply; null for none
};

// Lives as long as one of its operations is under way.
class Session : public std::enable_shared_from_this<Session> {
public:
    Session(boost::asio::ip::tcp::socket socket, ServerContext &house);

    void Start();

private:
    void Read();
    void OnRead(boost::beast::error_code error, std::size_t count);
    void Parse(bool ended);
    void Answer();
    void AnswerForWindow(const Request &request);
    void Send(const Request *request, const Response &response, const Fault *fault);
    void Show(const Request *request, const Response &response, const Fault *fault, const Transmission &sent);

    boost::beast::tcp_stream stream_;
    boost::asio::ip::address peer_;
    ServerContext &context_;
    boost::beast::http::request_parser<boost::beast::http::string_body> parser_;
    std::array<char, 4096> chunk_;
    std::string received_; // all that came
    std::size_t parsed_ = 0;
};

} // namespace shop
