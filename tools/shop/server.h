// The shop's HTTP side: any number of connections on a few threads.
#pragma once

#include "session.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>

namespace shop {

class Server {
public:
    // Listens at once. host: an address or a name. port 0 picks a free one. Throws
    // std::runtime_error that names the option at fault.
    Server(boost::asio::io_context &network, ServerContext &context, const std::string &host, unsigned short port);

    std::string address() const { return acceptor_.local_endpoint().address().to_string(); }

    unsigned short port() const { return acceptor_.local_endpoint().port(); }

    // Serves on so many threads until SIGINT or SIGTERM, then completes the requests that it has received. Writes a
    // line for each request to standard output.
    void Run(unsigned threads);

private:
    void Accept();
    void Stop();
    void StopWhenIdle(int tries);

    boost::asio::io_context &network_;
    ServerContext &context_;
    boost::asio::steady_timer idleTimer_;
    boost::asio::signal_set signals_;
    boost::asio::ip::tcp::acceptor acceptor_;
};

} // namespace shop
