// Facts about a download's reply, by point of the examination.
#pragma once

#include "diagnostics/exchange.h"
#include "diagnostics/rule.h"

#include <string>
#include <utility>
#include <vector>

namespace client {

// Each examined point with the bytes (printable) or numbers that were seen. Points to
// which the reply contributes nothing are omitted.
[[nodiscard]] std::vector<std::pair<diagnostics::Topic, std::string>> PointsOf(const diagnostics::Exchange &download);

} // namespace client
