// No metrics: nothing watches an author's own shop.
#include "shop/metrics.h"

namespace shop {

struct Metrics::Counters {};

Metrics::Metrics() = default;

Metrics::~Metrics() = default;

void Metrics::CountExchange(const Request * /*request*/, const Response & /*response*/,
                            std::chrono::duration<double> /*taken*/)
{
}

void Metrics::CountDatabaseError() {}

void Metrics::ChangeConnectionsInUse(int /*difference*/) {}

std::string Metrics::Text() const
{
    return "";
}

} // namespace shop
