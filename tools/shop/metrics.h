// The shop's metrics in Prometheus' text format. On Windows, where an author's own shop runs, nothing is counted.
#pragma once

#include "transmission.h"

#include <chrono>
#include <memory>
#include <string>

namespace shop {

// Used by all threads.
class Metrics {
public:
    Metrics();
    ~Metrics();

    void CountExchange(const Request *request, const Response &response, std::chrono::duration<double> taken);
    void CountDatabaseError();
    void ChangeConnectionsInUse(int difference);

    [[nodiscard]] std::string Text() const; // empty if nothing is counted

private:
    struct Counters;
    std::unique_ptr<Counters> counters_;
};

} // namespace shop
