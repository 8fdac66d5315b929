// The shop's metrics in Prometheus' text format.
#pragma once

#include "transmission.h"

#include <prometheus/counter.h>
#include <prometheus/gauge.h>
#include <prometheus/histogram.h>
#include <prometheus/registry.h>

#include <chrono>
#include <string>

namespace shop {

// Used by all threads.
class Metrics {
public:
    Metrics();

    void CountExchange(const Request *request, const Response &response, std::chrono::duration<double> taken);
    void CountDatabaseError() { databaseErrors_.Increment(); }
    prometheus::Gauge &connectionsInUse() { return connectionsInUse_; }

    [[nodiscard]] std::string Text() const;

private:
    prometheus::Registry registry_;
    prometheus::Family<prometheus::Counter> &requests_;
    prometheus::Family<prometheus::Histogram> &latency_;
    prometheus::Counter &purchases_;
    prometheus::Counter &databaseErrors_;
    prometheus::Gauge &connectionsInUse_;
};

} // namespace shop
