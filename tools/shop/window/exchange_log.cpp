#include "shop/window/exchange_log.h"

#include <algorithm>
#include <iterator>

namespace shop {

namespace {

// Returns how many bytes were cut off.
std::size_t Cut(std::string *text, std::size_t most)
{
    const std::size_t gone = text->size() - std::min(text->size(), most);
    text->resize(text->size() - gone);
    text->shrink_to_fit();
    return gone;
}

} // namespace

void ExchangeLog::Add(SeenExchange seen)
{
    constexpr std::size_t kShownText = 200;
    seen.exchange.beyond = Cut(&seen.exchange.reply, kKeptBytes);
    (void)Cut(&seen.exchange.request, kKeptBytes);
    (void)Cut(&seen.asked, kShownText);
    (void)Cut(&seen.message, kShownText);
    const std::scoped_lock lock(mutex_);
    seen.number = ++newest_;
    exchanges_.push_back(std::move(seen));
    if (exchanges_.size() > kKept) {
        exchanges_.pop_front();
    }
}

std::vector<SeenExchange> ExchangeLog::Newer(std::uint64_t number) const
{
    const std::scoped_lock lock(mutex_);
    std::vector<SeenExchange> newer;
    std::copy_if(exchanges_.begin(), exchanges_.end(), std::back_inserter(newer),
                 [&](const SeenExchange &seen) { return seen.number > number; });
    return newer;
}

std::uint64_t ExchangeLog::newest() const
{
    const std::scoped_lock lock(mutex_);
    return newest_;
}

} // namespace shop
