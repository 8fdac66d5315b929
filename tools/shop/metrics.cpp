#include "metrics.h"

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

Metrics::Metrics()
    : requests_(prometheus::BuildCounter()
                    .Name("pavonix_shop_requests_total")
                    .Help("Requests by resource, HTTP status and error code")
                    .Register(registry_)),
      latency_(prometheus::BuildHistogram()
                   .Name("pavonix_shop_request_seconds")
                   .Help("Time from the request to the reply, by resource")
                   .Register(registry_)),
      purchases_(prometheus::BuildCounter()
                     .Name("pavonix_shop_purchases_total")
                     .Help("Goods sold by this process")
                     .Register(registry_)
                     .Add({})),
      databaseErrors_(prometheus::BuildCounter()
                          .Name("pavonix_shop_database_errors_total")
                          .Help("Failures of the database or of the connection to it")
                          .Register(registry_)
                          .Add({})),
      connectionsInUse_(prometheus::BuildGauge()
                            .Name("pavonix_shop_connections_in_use")
                            .Help("Database connections that serve a request")
                            .Register(registry_)
                            .Add({}))
{
}

void Metrics::CountExchange(const Request *request, const Response &response, std::chrono::duration<double> taken)
{
    const std::string resource = ResourceOf(request);
    const auto code = response["X-Error-Code"];
    requests_
        .Add({{"resource", resource},
              {"status", std::to_string(response.result_int())},
              {"code", code.empty() ? "0" : std::string(code)}})
        .Increment();
    latency_.Add({{"resource", resource}}, kSeconds).Observe(taken.count());
    if (resource == "buy" && response.result_int() == 200) {
        purchases_.Increment();
    }
}

std::string Metrics::Text() const
{
    return prometheus::TextSerializer().Serialize(registry_.Collect());
}

} // namespace shop
