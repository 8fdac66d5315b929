#include "workers.h"

#include "errors.h"
#include "replies.h"

namespace shop {

namespace {

constexpr std::chrono::seconds kLongestWait{2};
constexpr std::chrono::milliseconds kLookInterval{100};

} // namespace

Workers::Workers(ShopState &state, unsigned connections) : state_(state)
{
    for (unsigned i = 0; i < connections; ++i) {
        threads_.emplace_back([this] { Work(); });
    }
    threads_.emplace_back([this] { RefuseLate(); });
}

Workers::~Workers()
{
    {
        const std::scoped_lock lock(mutex_);
        stopping_ = true;
    }
    added_.notify_all();
    stopped_.notify_all();
    for (std::thread &thread : threads_) {
        thread.join();
    }
}

void Workers::Answer(const Request &request, std::function<void(Response)> done)
{
    {
        const std::scoped_lock lock(mutex_);
        waiting_.push_back({&request, std::move(done), std::chrono::steady_clock::now() + kLongestWait});
    }
    added_.notify_one();
}

void Workers::Work()
{
    Shop shop(state_);
    std::unique_lock lock(mutex_);
    while (true) {
        added_.wait(lock, [this] { return stopping_ || !waiting_.empty(); });
        if (stopping_) {
            return;
        }
        const Job job = std::move(waiting_.front());
        waiting_.pop_front();
        lock.unlock();
        state_.metrics.connectionsInUse().Increment();
        Response response = shop.Answer(*job.request);
        state_.metrics.connectionsInUse().Decrement();
        job.done(std::move(response));
        lock.lock();
    }
}

// Jobs wait in the order of their deadlines.
void Workers::RefuseLate()
{
    std::unique_lock lock(mutex_);
    while (!stopped_.wait_for(lock, kLookInterval, [this] { return stopping_; })) {
        while (!waiting_.empty() && waiting_.front().deadline < std::chrono::steady_clock::now()) {
            const Job job = std::move(waiting_.front());
            waiting_.pop_front();
            lock.unlock();
            job.done(MakeErrorResponse(kShopBusy, kShopBusy.text));
            lock.lock();
        }
    }
}

} // namespace shop
