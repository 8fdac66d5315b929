// One exchange as HTML: its bytes, its faults and its token.
#pragma once

#include "shop/database/database.h"
#include "shop/window/exchange_log.h"

#include <string>

namespace shop {

[[nodiscard]] std::string ExchangeAsHtml(Database &database, const SeenExchange &seen);

} // namespace shop
