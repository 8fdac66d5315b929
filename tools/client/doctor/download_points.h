// The points of an examination that one download's reply shows.
#pragma once

#include "diagnostics/exchange.h"
#include "diagnostics/rule.h"

#include <string>
#include <utility>
#include <vector>

namespace client {

// Each point that was looked at, with the printable bytes or numbers that show it.
// A point that the reply has nothing for is left out.
[[nodiscard]] std::vector<std::pair<diagnostics::Topic, std::string>> PointsOf(const diagnostics::Exchange &download);

} // namespace client
