#pragma once

#include <string>

namespace shop {

// Returns the bytes as one gzip member.
[[nodiscard]] std::string Gzip(const std::string &bytes);

} // namespace shop
