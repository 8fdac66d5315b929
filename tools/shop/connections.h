// The connections to the database, which the requests share.
#pragma once

#include "shop.h"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <deque>
#include <functional>
#include <vector>

namespace shop {

// A request is answered by the thread that read it. The network must have more threads than there are connections, so
// that a hanging database does not stop it.
class Connections {
public:
    Connections(boost::asio::io_context &network, ShopState &state, unsigned count);

    // Calls `done` with the response: at once if a connection is free, or later on the executor. It is a refusal if no
    // connection is free for two seconds. request: must live until then.
    void Answer(const Request &request, const boost::asio::any_io_executor &executor,
                std::function<void(Response)> done);

private:
    struct Job {
        const Request *request;
        boost::asio::any_io_executor executor;
        std::function<void(Response)> done;
        std::chrono::steady_clock::time_point deadline;
    };

    void Run(Shop &shop, const Job &job);
    void Release(Shop &shop);
    void RefuseLate();

    ShopState &state_;
    std::deque<Shop> shops_;
    std::mutex mutex_;
    std::vector<Shop *> idle_;
    std::deque<Job> waiting_;
    boost::asio::steady_timer timer_;
};

} // namespace shop
