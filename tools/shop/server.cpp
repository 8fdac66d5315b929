#include "server.h"

#include "session.h"

#include <boost/asio/steady_timer.hpp>

#include <iostream>

namespace shop {

namespace asio = boost::asio;

Server::Server(Shop &shop, const std::string &host, unsigned short port)
    : shop_(shop), signals_(context_, SIGINT, SIGTERM), acceptor_(context_, {asio::ip::make_address(host), port})
{
}

void Server::Run()
{
    signals_.async_wait([this](boost::system::error_code, int) { context_.stop(); });
    Accept();
    context_.run();
}

void Server::Accept()
{
    acceptor_.async_accept([this](boost::system::error_code error, asio::ip::tcp::socket socket) {
        if (!error) {
            std::make_shared<Session>(std::move(socket), shop_)->Start();
            Accept();
            return;
        }
        // Out of descriptors, most likely: asking again at once would only spin.
        std::cerr << "pavonix-shop: " << error.message() << std::endl;
        auto pause = std::make_shared<asio::steady_timer>(context_, std::chrono::milliseconds(100));
        pause->async_wait([this, pause](boost::system::error_code) { Accept(); });
    });
}

} // namespace shop
