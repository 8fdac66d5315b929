#include "server.h"

#include "diagnostics/printable.h"

#include <boost/asio/steady_timer.hpp>

#include <iostream>

namespace shop {

namespace asio = boost::asio;

namespace {

// Devices know IPv4 only: of a name's addresses, such a one is preferred.
asio::ip::address AddressOf(asio::io_context &context, const std::string &host)
{
    boost::system::error_code error;
    const auto found = asio::ip::tcp::resolver(context).resolve(host, "", error);
    if (error || found.empty()) {
        throw std::runtime_error("--host " + diagnostics::Printable(host) + ": " + error.message());
    }
    for (const auto &one : found) {
        if (one.endpoint().address().is_v4()) {
            return one.endpoint().address();
        }
    }
    return found.begin()->endpoint().address();
}

} // namespace

Server::Server(asio::io_context &context, ServerContext house, const std::string &host, unsigned short port)
    : context_(context), serverContext_(house), signals_(context_, SIGINT, SIGTERM), acceptor_(context_)
{
    const asio::ip::tcp::endpoint endpoint(AddressOf(context_, host), port);
    try {
        acceptor_.open(endpoint.protocol());
        acceptor_.set_option(asio::socket_base::reuse_address(true));
        acceptor_.bind(endpoint);
        acceptor_.listen();
    } catch (const boost::system::system_error &failure) {
        throw std::runtime_error("--host " + endpoint.address().to_string() + " --port " + std::to_string(port) + ": " +
                                 failure.code().message());
    }
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
            std::make_shared<Session>(std::move(socket), serverContext_)->Start();
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
