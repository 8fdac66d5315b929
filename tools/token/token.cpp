// OpenSSL offers OAEP decoding on its own only by a function that it advises
// against, as decoding is usually one with decrypting. Here it follows the
// public operation, for which there is no newer way.
#define OPENSSL_SUPPRESS_DEPRECATED

#include "token/token.h"

#include <openssl/err.h>
#include <openssl/rsa.h>

#include <span>

namespace token {

namespace {

struct FreeContext {
    void operator()(EVP_PKEY_CTX *context) const { EVP_PKEY_CTX_free(context); }
};

// Returns the block raised to the public exponent, as long as the modulus, or an
// empty one.
Bytes PublicOperation(std::span<const unsigned char> block, const PublicKey &key)
{
    const std::unique_ptr<EVP_PKEY_CTX, FreeContext> context(EVP_PKEY_CTX_new(key.get(), nullptr));
    Bytes encoded(block.size());
    std::size_t length = encoded.size();
    if (EVP_PKEY_verify_recover_init(context.get()) <= 0 ||
        EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_NO_PADDING) <= 0 ||
        EVP_PKEY_verify_recover(context.get(), encoded.data(), &length, block.data(), block.size()) <= 0 ||
        length != encoded.size()) {
        return {};
    }
    return encoded;
}

std::optional<std::string> DecodeOaep(const Bytes &encoded)
{
    std::string message(encoded.size(), '\0');
    const int size = static_cast<int>(encoded.size());
    const int length = RSA_padding_check_PKCS1_OAEP(reinterpret_cast<unsigned char *>(message.data()), size,
                                                    encoded.data(), size, size, nullptr, 0);
    if (length < 0) {
        return std::nullopt;
    }
    message.resize(static_cast<std::size_t>(length));
    return message;
}

// Opens the blocks, up to the first one that does not open.
std::vector<OpenedBlock> OpenBlocks(const Bytes &ciphertext, std::size_t blockSize, const PublicKey &key)
{
    std::vector<OpenedBlock> blocks;
    for (std::size_t at = 0; at < ciphertext.size(); at += blockSize) {
        const auto received = std::span(ciphertext).subspan(at, blockSize);
        OpenedBlock block{{received.begin(), received.end()}, PublicOperation(received, key), std::nullopt};
        block.text = block.encoded.empty() ? std::nullopt : DecodeOaep(block.encoded);
        blocks.push_back(std::move(block));
        if (!blocks.back().text) {
            ERR_clear_error();
            break;
        }
    }
    return blocks;
}

} // namespace

Opening OpenStepByStep(const std::string &headerValue, const PublicKey &key)
{
    Opening opening{DecodeBase64(headerValue), {}, {}, {}};
    const auto blockSize = static_cast<std::size_t>(EVP_PKEY_get_size(key.get()));
    if (!opening.ciphertext || opening.ciphertext->size() % blockSize != 0) {
        return opening;
    }
    opening.blocks = OpenBlocks(*opening.ciphertext, blockSize, key);
    std::string text;
    for (const OpenedBlock &block : opening.blocks) {
        if (!block.text) {
            return opening;
        }
        text += *block.text;
    }
    opening.time = ParseTimeText(text);
    opening.text = std::move(text);
    return opening;
}

std::optional<Token> OpenToken(const std::string &headerValue, const PublicKey &key)
{
    const Opening opening = OpenStepByStep(headerValue, key);
    if (!opening.ciphertext || !opening.time) {
        return std::nullopt;
    }
    Token token{{}, *opening.time};
    for (const OpenedBlock &block : opening.blocks) {
        token.blocks.push_back(block.received);
    }
    return token;
}

} // namespace token
