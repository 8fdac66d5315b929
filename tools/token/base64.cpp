#include "token/base64.h"

#include <openssl/evp.h>

namespace token {

std::optional<Bytes> DecodeBase64(const std::string &text)
{
    Bytes bytes(text.size());
    const auto *input = reinterpret_cast<const unsigned char *>(text.data());
    // OpenSSL skips blanks around the text and turns padding into zero bytes.
    const int count = EVP_DecodeBlock(bytes.data(), input, static_cast<int>(text.size()));
    const std::size_t last = text.find_last_not_of('=');
    const std::size_t padding = last == std::string::npos ? 0 : text.size() - last - 1;
    if (count <= 0 || padding > 2 || static_cast<std::size_t>(count) != text.size() / 4 * 3) {
        return std::nullopt;
    }
    bytes.resize(static_cast<std::size_t>(count) - padding);
    return bytes;
}

} // namespace token
