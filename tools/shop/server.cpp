#include "server.h"

#include "access_log.h"
#include "diagnostics/printable.h"

#include <boost/asio/dispatch.hpp>
#include <boost/asio/executor_work_guard.hpp>

#include <thread>

namespace shop {

namespace asio = boost::asio;

namespace {

constexpr std::chrono::milliseconds kStopInterval{20};
constexpr std::chrono::seconds kLongestStop{12}; // more than a statement on the database may take

// Devices know IPv4 only, so an IPv4 address of a name is preferred.
asio::ip::address AddressOf(asio::io_context &network, const std::string &host)
{
    boost::system::error_code error;
    const auto found = asio::ip::tcp::resolver(network).resolve(host, "", error);
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

Server::Server(Networks &networks, ServerContext &context, const std::string &host, unsigned short port)
    : networks_(networks),
      context_(context),
      idleTimer_(networks.front()),
      signals_(networks.front(), SIGINT, SIGTERM),
      acceptor_(networks.front())
{
    const asio::ip::tcp::endpoint endpoint(AddressOf(networks.front(), host), port);
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
    signals_.async_wait([this](boost::system::error_code, int) { Stop(); });
    Accept();
    std::vector<std::thread> others;
    for (std::size_t i = 1; i < networks_.size(); ++i) {
        others.emplace_back([&network = networks_[i]] {
            const auto work = asio::make_work_guard(network);
            network.run();
        });
    }
    networks_.front().run();
    for (std::thread &thread : others) {
        thread.join();
    }
}

void Server::Stop()
{
    context_.stopping = true;
    boost::system::error_code ignored;
    (void)acceptor_.close(ignored);
    StopWhenIdle(kLongestStop / kStopInterval);
}

// Without this a purchase under way would lose its reply at each restart.
void Server::StopWhenIdle(int tries)
{
    idleTimer_.expires_after(kStopInterval);
    idleTimer_.async_wait([this, tries](boost::system::error_code) {
        if (context_.exchangesUnderWay == 0 || tries == 0) {
            for (asio::io_context &network : networks_) {
                network.stop();
            }
        } else {
            StopWhenIdle(tries - 1);
        }
    });
}

void Server::Accept()
{
    asio::io_context &network = networks_[next_++ % networks_.size()];
    acceptor_.async_accept(network, [this](boost::system::error_code error, asio::ip::tcp::socket socket) {
        if (error == asio::error::operation_aborted) {
            return;
        }
        if (!error) {
            const auto executor = socket.get_executor();
            asio::dispatch(executor,
                           [session = std::make_shared<Session>(std::move(socket), context_)] { session->Start(); });
            Accept();
            return;
        }
        // Out of descriptors, most likely: accepting again at once would only spin.
        LogError(error.message());
        auto pause = std::make_shared<asio::steady_timer>(networks_.front(), std::chrono::milliseconds(100));
        pause->async_wait([this, pause](boost::system::error_code) { Accept(); });
    });
}

} // namespace shop
