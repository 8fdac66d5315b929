// Strict base64: the standard alphabet with padding, nothing else.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace token {

using Bytes = std::vector<unsigned char>;

// Empty if the text is empty or not base64.
[[nodiscard]] std::optional<Bytes> DecodeBase64(const std::string &text);

} // namespace token
