// OpenSSL offers OAEP decoding on its own only by a function that it advises
// against, as decoding is usually one with decrypting. Here it follows the
// public operation, for which there is no newer way.
#define OPENSSL_SUPPRESS_DEPRECATED

#include "token.h"

#include "errors.h"

#include <openssl/err.h>
#include <openssl/rsa.h>

#include <span>

namespace shop {

namespace {

struct FreeContext {
    void operator()(EVP_PKEY_CTX *context) const { EVP_PKEY_CTX_free(context); }
};

// Answers the block raised to the public exponent, as long as the modulus.
Bytes PublicOperation(std::span<const unsigned char> block, const PublicKey &key)
{
    const std::unique_ptr<EVP_PKEY_CTX, FreeContext> context(EVP_PKEY_CTX_new(key.get(), nullptr));
    Bytes encoded(block.size());
    std::size_t length = encoded.size();
    if (EVP_PKEY_verify_recover_init(context.get()) <= 0 ||
        EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_NO_PADDING) <= 0 ||
        EVP_PKEY_verify_recover(context.get(), encoded.data(), &length, block.data(), block.size()) <= 0 ||
        length != encoded.size()) {
        ERR_clear_error();
        throw Refusal(kInvalidToken);
    }
    return encoded;
}

std::string DecodeOaep(const Bytes &encoded)
{
    std::string message(encoded.size(), '\0');
    const int size = static_cast<int>(encoded.size());
    const int length = RSA_padding_check_PKCS1_OAEP(reinterpret_cast<unsigned char *>(message.data()), size,
                                                    encoded.data(), size, size, nullptr, 0);
    if (length < 0) {
        ERR_clear_error();
        throw Refusal(kInvalidToken);
    }
    message.resize(static_cast<std::size_t>(length));
    return message;
}

} // namespace

Token OpenToken(const std::string &headerValue, const PublicKey &key)
{
    const auto ciphertext = DecodeBase64(headerValue);
    const auto blockSize = static_cast<std::size_t>(EVP_PKEY_get_size(key.get()));
    if (!ciphertext || ciphertext->size() % blockSize != 0) {
        throw Refusal(kInvalidToken);
    }
    std::string text;
    for (std::size_t at = 0; at < ciphertext->size(); at += blockSize) {
        text += DecodeOaep(PublicOperation(std::span(*ciphertext).subspan(at, blockSize), key));
    }
    const auto time = ParseTimeText(text);
    if (!time) {
        throw Refusal(kInvalidToken, "it holds no time");
    }
    return {*ciphertext, *time};
}

} // namespace shop
