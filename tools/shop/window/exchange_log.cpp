#include "shop/window/exchange_log.h"

namespace shop {

namespace {

// Answers how many bytes had to go.
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
    seen.number = ++newest_;
    seen.exchange.beyond = Cut(&seen.exchange.reply, kKeptBytes);
    (void)Cut(&seen.exchange.request, kKeptBytes);
    (void)Cut(&seen.asked, kShownText);
    (void)Cut(&seen.message, kShownText);
    exchanges_.push_back(std::move(seen));
    if (exchanges_.size() > kKept) {
        exchanges_.pop_front();
    }
}

} // namespace shop
