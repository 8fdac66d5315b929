// The connections to the database, each with a thread that waits for its replies.
#pragma once

#include "shop.h"

#include <boost/asio/steady_timer.hpp>
#include <boost/asio/thread_pool.hpp>

#include <deque>
#include <functional>
#include <vector>

namespace shop {

class Connections {
public:
    // network: runs a timer.
    Connections(boost::asio::io_context &network, ShopState &state, unsigned count);

    // Calls `done` with the response, on another thread. It is a refusal if no connection is free for two seconds.
    // request: must live until then.
    void Handle(const Request &request, std::function<void(Response)> done);

    // Waits for the last requests.
    void Join() { threads_.join(); }

private:
    struct Job {
        const Request *request;
        std::function<void(Response)> done;
        std::chrono::steady_clock::time_point deadline;
    };

    void Run(Shop &shop, Job job);
    [[nodiscard]] std::optional<Job> NextJob(Shop &shop);
    void RefuseLate();

    ShopState &state_;
    std::deque<Shop> shops_;
    std::mutex mutex_;
    std::vector<Shop *> idle_;
    std::deque<Job> waiting_; // in the order of their deadlines
    boost::asio::steady_timer timer_;
    boost::asio::thread_pool threads_;
};

} // namespace shop
