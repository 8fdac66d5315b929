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

std::string Element(const Key &key, const char *name, const char *parameter)
{
    BIGNUM *found = nullptr;
    if (EVP_PKEY_get_bn_param(key.get(), parameter, &found) <= 0) {
        throw Failure(ExitCode::kLocalFailure, std::string("OpenSSL gives no ") + name);
    }
    const std::unique_ptr<BIGNUM, Release> number(found);
    std::vector<unsigned char> bytes(static_cast<std::size_t>(BN_num_bytes(number.get())));
    BN_bn2bin(number.get(), bytes.data());
    std::vector<unsigned char> base64(bytes.size() / 3 * 4 + 5);
    EVP_EncodeBlock(base64.data(), bytes.data(), static_cast<int>(bytes.size()));
    return std::string("<") + name + ">" + reinterpret_cast<const char *>(base64.data()) + "</" + name + ">";
}

std::string Root(const std::string &children)
{
    return "<RSAKeyValue>" + children + "</RSAKeyValue>";
}

} // namespace

KeyPair MakeKeyPair(int bits)
{
    const Key key(EVP_RSA_gen(static_cast<unsigned>(bits)));
    if (key == nullptr) {
        throw Failure(ExitCode::kLocalFailure, "OpenSSL makes no key of " + std::to_string(bits) + " bits");
    }
    const std::string publicParts =
        Element(key, "Modulus", OSSL_PKEY_PARAM_RSA_N) + Element(key, "Exponent", OSSL_PKEY_PARAM_RSA_E);
    const std::string primes =
        Element(key, "P", OSSL_PKEY_PARAM_RSA_FACTOR1) + Element(key, "Q", OSSL_PKEY_PARAM_RSA_FACTOR2) +
        Element(key, "DP", OSSL_PKEY_PARAM_RSA_EXPONENT1) + Element(key, "DQ", OSSL_PKEY_PARAM_RSA_EXPONENT2) +
        Element(key, "InverseQ", OSSL_PKEY_PARAM_RSA_COEFFICIENT1);
    return {Root(publicParts), Root(publicParts + primes + Element(key, "D", OSSL_PKEY_PARAM_RSA_D)),
            Root(publicParts + primes)};
}

} // namespace client
