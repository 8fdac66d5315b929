// One connection: a request in, a reply out.
#pragma once

#include "shop.h"

#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/parser.hpp>

#include <array>
#include <memory>

namespace shop {

// Lives as long as one of its operations is under way.
class Session : public std::enable_shared_from_this<Session> {
public:
    Session(boost::asio::ip::tcp::socket socket, Shop &shop);

    void Start();

private:
    void OnRead(boost::beast::error_code error);
    void Send(const Response &response);
    void Drain();
    void Log(const Response &response) const;

    boost::beast::tcp_stream stream_;
    Shop &shop_;
    boost::beast::flat_buffer buffer_;
    boost::beast::http::request_parser<boost::beast::http::string_body> parser_;
    std::string reply_;
    std::array<char, 4096> dropped_;
};

} // namespace shop
