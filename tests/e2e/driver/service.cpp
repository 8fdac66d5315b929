#include "service.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/process.hpp>

#include <chrono>
#include <csignal>
#include <thread>

namespace pavonix::e2e {

namespace {

namespace process = boost::process;
using boost::asio::ip::tcp;

tcp::endpoint Loopback(int port)
{
    return {boost::asio::ip::address_v4::loopback(), static_cast<unsigned short>(port)};
}

bool CanConnect(int port)
{
    boost::asio::io_context context;
    boost::system::error_code error;
    tcp::socket(context).connect(Loopback(port), error);
    return !error;
}

} // namespace

int FreePort()
{
    boost::asio::io_context context;
    return tcp::acceptor(context, Loopback(0)).local_endpoint().port();
}

Service::Service(const std::vector<std::string> &command, int port, const std::string &logFile)
    : program_(std::make_unique<process::child>(command, (process::std_out & process::std_err) > logFile)), port_(port)
{
}

Service::~Service()
{
    kill(program_->id(), SIGTERM); // so that it can end its own workers
    program_->wait();
}

bool Service::IsUp() const
{
    for (int i = 0; i < 500 && program_->running(); ++i) {
        if (CanConnect(port_)) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

} // namespace pavonix::e2e
