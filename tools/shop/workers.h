// The threads that use the database.
#pragma once

#include "shop.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <thread>
#include <vector>

namespace shop {

// As many threads as connections. A request waits for one, so that a hanging database never holds up the threads of
// the network.
class Workers {
public:
    Workers(ShopState &state, unsigned connections);
    Workers(const Workers &) = delete;
    Workers &operator=(const Workers &) = delete;
    // Waits for the requests that were begun; the others are dropped.
    ~Workers();

    // Calls `done` with the response, on a thread of its own: a refusal if no connection is free for two seconds.
    // request: outlives that.
    void Answer(const Request &request, std::function<void(Response)> done);

private:
    struct Job {
        const Request *request;
        std::function<void(Response)> done;
        std::chrono::steady_clock::time_point deadline;
    };

    void Work();
    void RefuseLate();

    ShopState &state_;
    std::mutex mutex_;
    std::condition_variable added_;
    std::condition_variable stopped_;
    std::deque<Job> waiting_;
    bool stopping_ = false;
    std::vector<std::thread> threads_;
};

} // namespace shop
