#include "key_pair.h"

#include "exit_code.h"

#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/rsa.h>

#include <memory>
#include <vector>

namespace client {

namespace {

struct Release {
    void operator()(EVP_PKEY *key) const { EVP_PKEY_free(key); }
    void operator()(BIGNUM *number) const { BN_clear_free(number); }
};
using Key = std::unique_ptr<EVP_PKEY, Release>;

std::string Number(const Key &key, const char *parameter)
{
    BIGNUM *found = nullptr;
    if (EVP_PKEY_get_bn_param(key.get(), parameter, &found) <= 0) {
        throw Failure(ExitCode::kLocalFailure, std::string("OpenSSL does not return the key's ") + parameter);
    }
    const std::unique_ptr<BIGNUM, Release> number(found);
    std::vector<unsigned char> bytes(static_cast<std::size_t>(BN_num_bytes(number.get())));
    BN_bn2bin(number.get(), bytes.data());
    std::vector<unsigned char> base64(bytes.size() / 3 * 4 + 5);
    EVP_EncodeBlock(base64.data(), bytes.data(), static_cast<int>(bytes.size()));
    return reinterpret_cast<const char *>(base64.data());
}

} // namespace

KeyPair MakeKeyPair(int bits)
{
    const Key key(EVP_RSA_gen(static_cast<unsigned>(bits)));
    if (key == nullptr) {
        throw Failure(ExitCode::kLocalFailure, "OpenSSL cannot generate a key of " + std::to_string(bits) + " bits");
    }
    return {Number(key, OSSL_PKEY_PARAM_RSA_N),
            Number(key, OSSL_PKEY_PARAM_RSA_E),
            Number(key, OSSL_PKEY_PARAM_RSA_FACTOR1),
            Number(key, OSSL_PKEY_PARAM_RSA_FACTOR2),
            Number(key, OSSL_PKEY_PARAM_RSA_EXPONENT1),
            Number(key, OSSL_PKEY_PARAM_RSA_EXPONENT2),
            Number(key, OSSL_PKEY_PARAM_RSA_COEFFICIENT1),
            Number(key, OSSL_PKEY_PARAM_RSA_D)};
}

} // namespace client
