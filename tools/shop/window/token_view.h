// A purchase's token, opened step by step, as HTML.
#pragma once

#include "shop/database/database.h"
#include "token/time_text.h"

#include <string>

namespace shop {

// serial, userId, headerValue: as the request has them. at: the shop's clock then.
[[nodiscard]] std::string TokenAsHtml(Database &database, const std::string &serial, const std::string &userId,
                                      const std::string &headerValue, token::WallTime at);

} // namespace shop
