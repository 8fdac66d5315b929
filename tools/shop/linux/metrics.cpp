#include "shop/metrics.h"

#include <prometheus/counter.h>
#include <prometheus/gauge.h>
#include <prometheus/histogram.h>
#include <prometheus/registry.h>
#include <prometheus/text_serializer.h>

#include <algorithm>
#include <array>

namespace shop {

namespace {

// Only known paths become labels: a client must not be able to make new ones.
std::string ResourceOf(const Request *request)
{
    constexpr std::array<std::string_view, 3> kResources = {"/shop/list", "/shop/good", "/shop/buy"};
    const std::string_view target =
        request == nullptr ? std::string_view() : std::string_view(request->target().data(), request->target().size());
    const auto *known = std::find(kResources.begin(), kResources.end(), target.substr(0, target.find('?')));
    return known == kResources.end() ? "other" : std::string(known->substr(6));
}

const prometheus::Histogram::BucketBoundaries kSeconds = {.001, .0025, .005, .01, .025, .05, .1,
                                                          .25,  .5,    1,    2.5, 5,    10};

} // namespace

struct Metrics::Counters {
    prometheus::Registry registry{};
    prometheus::Family<prometheus::Counter> &requests = prometheus::BuildCounter()
                                                            .Name("pavonix_shop_requests_total")
                                                            .Help("Requests by resource, HTTP status and error code")
                                                            .Register(registry);
    prometheus::Family<prometheus::Histogram> &latency = prometheus::BuildHistogram()
                                                             .Name("pavonix_shop_request_seconds")
                                                             .Help("Time from the request to the reply, by resource")
                                                             .Register(registry);
    prometheus::Counter &purchases = prometheus::BuildCounter()
                                         .Name("pavonix_shop_purchases_total")
                                         .Help("Goods sold by this process")
                                         .Register(registry)
                                         .Add({});
    prometheus::Counter &databaseErrors = prometheus::BuildCounter()
                                              .Name("pavonix_shop_database_errors_total")
                                              .Help("Failures of the database or of the connection to it")
                                              .Register(registry)
                                              .Add({});
    prometheus::Gauge &connectionsInUse = prometheus::BuildGauge()
                                              .Name("pavonix_shop_connections_in_use")
                                              .Help("Database connections that serve a request")
                                              .Register(registry)
                                              .Add({});
};

Metrics::Metrics() : counters_(std::make_unique<Counters>()) {}

Metrics::~Metrics() = default;

void Metrics::CountExchange(const Request *request, const Response &response, std::chrono::duration<double> taken)
{
    const std::string resource = ResourceOf(request);
    const auto code = response["X-Error-Code"];
    counters_->requests
        .Add({{"resource", resource},
              {"status", std::to_string(response.result_int())},
              {"code", code.empty() ? "0" : std::string(code)}})
        .Increment();
    counters_->latency.Add({{"resource", resource}}, kSeconds).Observe(taken.count());
    if (resource == "buy" && response.result_int() == 200) {
        counters_->purchases.Increment();
    }
}

void Metrics::CountDatabaseError()
{
    counters_->databaseErrors.Increment();
}

void Metrics::ChangeConnectionsInUse(int difference)
{
    counters_->connectionsInUse.Increment(difference);
}

std::string Metrics::Text() const
{
    return prometheus::TextSerializer().Serialize(counters_->registry.Collect());
}

} // namespace shop
