// Purchases, devices and goods as HTML tables.
#pragma once

#include "shop/database/database.h"

#include <string>

namespace shop {

// The newest or first hundred rows of each.
[[nodiscard]] std::string ShopAsHtml(Database &database);

} // namespace shop
