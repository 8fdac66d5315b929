// The shop's HTTP side: any number of connections on a few threads.
#pragma once

#include "session.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>

#include <deque>

namespace shop {

// One for each thread. A connection stays with one: threads that share a network wake each other for every event.
using Networks = std::deque<boost::asio::io_context>;

class Server {
public:
    // Listens at once. host: an address or a name. port 0 picks a free one. Throws
    // std::runtime_error that names the option at fault.
    Server(Networks &networks, ServerContext &context, const std::string &host, unsigned short port);

    std::string address() const { return acceptor_.local_endpoint().address().to_string(); }

    unsigned short port() const { return acceptor_.local_endpoint().port(); }

    // Serves until SIGINT or SIGTERM, then completes the requests that it has received. Writes a line for each
    // request to standard output.
    void Run();

private:
    void Accept();
    void Stop();
    void StopWhenIdle(int tries);

    Networks &networks_;
    std::size_t next_ = 0; // of the networks, for the next connection
    ServerContext &context_;
    boost::asio::steady_timer idleTimer_;
    boost::asio::signal_set signals_;
    boost::asio::ip::tcp::acceptor acceptor_;
};

} // namespace shop
