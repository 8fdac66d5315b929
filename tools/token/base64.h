// Strict base64: the standard alphabet with padding, nothing between or behind.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace token {

using Bytes = std::vector<unsigned char>;

// Answers nothing when the text is empty or no base64.
[[nodiscard]] std::optional<Bytes> DecodeBase64(const std::string &text);

} // namespace token
