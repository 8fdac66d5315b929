// Files of the source tree, compiled in.
#pragma once

#include <string_view>

namespace shop {

extern const std::string_view kSchema;             // database/schema.sql
extern const std::string_view kDemonstrationGoods; // as CSV: goods to try a client on
extern const std::string_view kPage;               // of the window: with {{shop}} and {{exchanges}} to be replaced
extern const std::string_view kStyle;
extern const std::string_view kScript;

} // namespace shop
