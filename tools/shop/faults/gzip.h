#pragma once

#include <string>

namespace shop {

// Answers the bytes as one gzip member.
[[nodiscard]] std::string Gzip(const std::string &bytes);

} // namespace shop
