// The shop's log on standard output: a line for each request.
#pragma once

#include "transmission.h"

#include <string>

namespace shop {

// A request as the log and the window show it. The request's texts may hold any
// byte but line ends.
struct Visit {
    std::string peer;
    const Request *request = nullptr; // null when none was understood
    const Response *response = nullptr;
    std::string fault; // empty for none
};

// Writes one line of printable ASCII that begins with a time; lines sort by it. A purchase's line names buyer and good.
void LogVisit(const Visit &visit);

// Writes a line about a failure to standard error, with control characters escaped.
void LogError(const std::string &message);

} // namespace shop
