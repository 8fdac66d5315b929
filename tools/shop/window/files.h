// The window's files, compiled in.
#pragma once

#include <string_view>

namespace shop {

extern const std::string_view kPage; // {{shop}} and {{exchanges}} stand where these go
extern const std::string_view kStyle;
extern const std::string_view kScript;

} // namespace shop
