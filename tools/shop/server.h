// The shop's HTTP side: one thread, any number of connections, one request each.
#pragma once

#include "session.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/signal_set.hpp>

namespace shop {

class Server {
public:
    // Listens, and minds signals, at once. host: an address or a name. port 0 picks
    // a free one. Throws std::runtime_error that names the option at fault.
    Server(boost::asio::io_context &context, ServerContext house, const std::string &host, unsigned short port);

    std::string address() const { return acceptor_.local_endpoint().address().to_string(); }

    unsigned short port() const { return acceptor_.local_endpoint().port(); }

    // Serves until SIGINT or SIGTERM; writes a line per request to standard output.
    void Run();

private:
    void Accept();

    boost::asio::io_context &context_;
    ServerContext serverContext_;
    boost::asio::signal_set signals_;
    boost::asio::ip::tcp::acceptor acceptor_;
};

} // namespace shop
