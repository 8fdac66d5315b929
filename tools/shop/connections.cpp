#include "connections.h"

#include "errors.h"
#include "replies.h"

#include <boost/asio/post.hpp>

namespace shop {

namespace asio = boost::asio;

namespace {

constexpr std::chrono::seconds kLongestWait{2};
constexpr std::chrono::milliseconds kLookInterval{100};

} // namespace

Connections::Connections(asio::io_context &network, ShopState &state, unsigned count) : state_(state), timer_(network)
{
    for (unsigned i = 0; i < count; ++i) {
        idle_.push_back(&shops_.emplace_back(state));
    }
    RefuseLate();
}

void Connections::Answer(const Request &request, const asio::any_io_executor &executor,
                         std::function<void(Response)> done)
{
    Job job{&request, executor, std::move(done), std::chrono::steady_clock::now() + kLongestWait};
    std::unique_lock lock(mutex_);
    if (idle_.empty()) {
        waiting_.push_back(std::move(job));
        return;
    }
    Shop &shop = *idle_.back(); // the one used last: a quiet shop needs few connections
    idle_.pop_back();
    lock.unlock();
    Run(shop, job);
}

void Connections::Run(Shop &shop, const Job &job)
{
    state_.metrics.ChangeConnectionsInUse(1);
    Response response = shop.Answer(*job.request);
    state_.metrics.ChangeConnectionsInUse(-1);
    Release(shop);
    job.done(std::move(response));
}

void Connections::Release(Shop &shop)
{
    const std::scoped_lock lock(mutex_);
    if (waiting_.empty()) {
        idle_.push_back(&shop);
        return;
    }
    auto next = std::make_shared<Job>(std::move(waiting_.front()));
    waiting_.pop_front();
    asio::post(next->executor, [this, &shop, next] { Run(shop, *next); });
}

// Jobs wait in the order of their deadlines.
void Connections::RefuseLate()
{
    {
        const std::scoped_lock lock(mutex_);
        while (!waiting_.empty() && waiting_.front().deadline < std::chrono::steady_clock::now()) {
            auto late = std::make_shared<Job>(std::move(waiting_.front()));
            waiting_.pop_front();
            asio::post(late->executor, [late] { late->done(MakeErrorResponse(kShopBusy, kShopBusy.text)); });
        }
    }
    timer_.expires_after(kLookInterval);
    timer_.async_wait([this](boost::system::error_code error) {
        if (!error) {
            RefuseLate();
        }
    });
}

} // namespace shop
