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

Connections::Connections(asio::io_context &network, ShopState &state, unsigned count)
    : state_(state), timer_(network), threads_(count)
{
    for (unsigned i = 0; i < count; ++i) {
        idle_.push_back(&shops_.emplace_back(state));
    }
    RefuseLate();
}

void Connections::Handle(const Request &request, std::function<void(Response)> done)
{
    Job job{&request, std::move(done), std::chrono::steady_clock::now() + kLongestWait};
    const std::scoped_lock lock(mutex_);
    if (idle_.empty()) {
        waiting_.push_back(std::move(job));
        return;
    }
    Shop &shop = *idle_.back(); // the one used last: a quiet shop needs few connections
    idle_.pop_back();
    asio::post(threads_, [this, &shop, job = std::move(job)]() mutable { Run(shop, std::move(job)); });
}

void Connections::Run(Shop &shop, Job job)
{
    for (std::optional<Job> next = std::move(job); next; next = NextJob(shop)) {
        state_.metrics.ChangeConnectionsInUse(1);
        Response response = shop.Handle(*next->request);
        state_.metrics.ChangeConnectionsInUse(-1);
        next->done(std::move(response));
    }
}

std::optional<Connections::Job> Connections::NextJob(Shop &shop)
{
    const std::scoped_lock lock(mutex_);
    if (waiting_.empty()) {
        idle_.push_back(&shop);
        return std::nullopt;
    }
    std::optional<Job> next(std::move(waiting_.front()));
    waiting_.pop_front();
    return next;
}

void Connections::RefuseLate()
{
    std::vector<Job> late;
    {
        const std::scoped_lock lock(mutex_);
        while (!waiting_.empty() && waiting_.front().deadline < std::chrono::steady_clock::now()) {
            late.push_back(std::move(waiting_.front()));
            waiting_.pop_front();
        }
    }
    for (const Job &job : late) {
        job.done(MakeErrorResponse(kShopBusy, kShopBusy.text));
    }
    timer_.expires_after(kLookInterval);
    timer_.async_wait([this](boost::system::error_code error) {
        if (!error) {
            RefuseLate();
        }
    });
}

} // namespace shop
