#include "token/rsa_key.h"

#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/param_build.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>

#include <stdexcept>

namespace token {

namespace {

struct Release {
    void operator()(EVP_PKEY *key) const { EVP_PKEY_free(key); }
    void operator()(BIGNUM *number) const { BN_free(number); }
    void operator()(OSSL_PARAM_BLD *builder) const { OSSL_PARAM_BLD_free(builder); }
    void operator()(OSSL_PARAM *parameters) const { OSSL_PARAM_free(parameters); }
    void operator()(EVP_PKEY_CTX *context) const { EVP_PKEY_CTX_free(context); }
    void operator()(BIO *stream) const { BIO_free(stream); }
};
template <class T>
using Owned = std::unique_ptr<T, Release>;

Owned<BIGNUM> Number(ByteSpan bytes)
{
    return Owned<BIGNUM>(BN_bin2bn(bytes.data(), static_cast<int>(bytes.size()), nullptr));
}

} // namespace

struct RsaKey {
    Owned<EVP_PKEY> key;
};

PublicKey MakePublicKey(ByteSpan modulus, ByteSpan exponent)
{
    const Owned<BIGNUM> n = Number(modulus);
    const Owned<BIGNUM> e = Number(exponent);
    const Owned<OSSL_PARAM_BLD> builder(OSSL_PARAM_BLD_new());
    OSSL_PARAM_BLD_push_BN(builder.get(), OSSL_PKEY_PARAM_RSA_N, n.get());
    OSSL_PARAM_BLD_push_BN(builder.get(), OSSL_PKEY_PARAM_RSA_E, e.get());
    const Owned<OSSL_PARAM> parameters(OSSL_PARAM_BLD_to_param(builder.get()));
    const Owned<EVP_PKEY_CTX> context(EVP_PKEY_CTX_new_from_name(nullptr, "RSA", nullptr));
    EVP_PKEY *key = nullptr;
    if (EVP_PKEY_fromdata_init(context.get()) <= 0 ||
        EVP_PKEY_fromdata(context.get(), &key, EVP_PKEY_PUBLIC_KEY, parameters.get()) <= 0) {
        throw std::runtime_error("modulus and exponent do not form an RSA key");
    }
    return std::make_shared<const RsaKey>(Owned<EVP_PKEY>(key));
}

PublicKey ReadPem(const std::string &text)
{
    const Owned<BIO> stream(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
    Owned<EVP_PKEY> key(PEM_read_bio_PUBKEY(stream.get(), nullptr, nullptr, nullptr));
    if (key == nullptr || !EVP_PKEY_is_a(key.get(), "RSA")) {
        throw std::runtime_error("the PEM text contains no RSA public key");
    }
    return std::make_shared<const RsaKey>(std::move(key));
}

std::string PublicKeyToPem(const PublicKey &key)
{
    const Owned<BIO> stream(BIO_new(BIO_s_mem()));
    PEM_write_bio_PUBKEY(stream.get(), key->key.get());
    char *text = nullptr;
    const long length = BIO_get_mem_data(stream.get(), &text);
    return {text, static_cast<std::size_t>(length)};
}

int ModulusBits(const PublicKey &key)
{
    return EVP_PKEY_get_bits(key->key.get());
}

Bytes ModulusOf(const PublicKey &key)
{
    BIGNUM *modulus = nullptr;
    EVP_PKEY_get_bn_param(key->key.get(), OSSL_PKEY_PARAM_RSA_N, &modulus);
    const Owned<BIGNUM> owner(modulus);
    Bytes bytes(static_cast<std::size_t>(BN_num_bytes(modulus)));
    BN_bn2bin(modulus, bytes.data());
    return bytes;
}

// "Recovering" a signature without padding is the public operation.
Bytes RaiseToExponent(ByteSpan number, const PublicKey &key)
{
    const Owned<EVP_PKEY_CTX> context(EVP_PKEY_CTX_new(key->key.get(), nullptr));
    Bytes raised(number.size());
    std::size_t length = raised.size();
    if (EVP_PKEY_verify_recover_init(context.get()) <= 0 ||
        EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_NO_PADDING) <= 0 ||
        EVP_PKEY_verify_recover(context.get(), raised.data(), &length, number.data(), number.size()) <= 0 ||
        length != raised.size()) {
        ERR_clear_error();
        return {};
    }
    return raised;
}

Sha1Digest Sha1(ByteSpan bytes)
{
    static const EVP_MD *const kDigest = EVP_MD_fetch(nullptr, "SHA1", nullptr); // fetching costs more than a digest
    Sha1Digest digest;
    if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), nullptr, kDigest, nullptr) != 1) {
        throw std::runtime_error("the digest SHA-1 is not available");
    }
    return digest;
}

} // namespace token
