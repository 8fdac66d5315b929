#include "support/openssl_key.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <openssl/evp.h>

namespace pavonix::test {

namespace {

const unsigned char *Unsigned(const std::string &bytes)
{
    return reinterpret_cast<const unsigned char *>(bytes.data());
}

unsigned char *Unsigned(std::string &bytes)
{
    return reinterpret_cast<unsigned char *>(bytes.data());
}

std::string Unpad(int padding, const std::string &block)
{
    std::string message(block.size(), 0);
    const int size = static_cast<int>(block.size());
    const int length =
        padding == RSA_PKCS1_OAEP_PADDING
            ? RSA_padding_check_PKCS1_OAEP(Unsigned(message), size, Unsigned(block), size, size, nullptr, 0)
            : RSA_padding_check_PKCS1_type_2(Unsigned(message), size, Unsigned(block), size, size);
    return length < 0 ? "?" : message.substr(0, static_cast<std::size_t>(length));
}

} // namespace

std::string ToBase64(const std::string &bytes)
{
    std::string text(bytes.size() / 3 * 4 + 5, 0);
    text.resize(
        static_cast<std::size_t>(EVP_EncodeBlock(Unsigned(text), Unsigned(bytes), static_cast<int>(bytes.size()))));
    return text;
}

std::string FromBase64(const std::string &text)
{
    std::string bytes(text.size(), 0);
    const int length = EVP_DecodeBlock(Unsigned(bytes), Unsigned(text), static_cast<int>(text.size()));
    const auto padding = std::count(text.begin(), text.end(), '=');
    return length < 0 ? "" : bytes.substr(0, static_cast<std::size_t>(length - padding));
}

Number ToNumber(const std::string &bytes)
{
    return Number(BN_bin2bn(Unsigned(bytes), static_cast<int>(bytes.size()), nullptr), BN_free);
}

std::string ToBytes(const BIGNUM *number)
{
    std::string bytes(static_cast<std::size_t>(BN_num_bytes(number)), 0);
    BN_bn2bin(number, Unsigned(bytes));
    return bytes;
}

std::string Element(const std::string &tag, const std::string &bytes)
{
    return std::string("<") + tag + ">" + ToBase64(bytes) + "</" + tag + ">";
}

OpenSslKey::OpenSslKey(int bits) : rsa_(RSA_new(), RSA_free)
{
    RSA_generate_key_ex(rsa_.get(), bits, ToNumber(std::string("\1\0\1", 3)).get(), nullptr);
}

OpenSslKey::OpenSslKey(const std::string &pHex, const std::string &qHex) : rsa_(RSA_new(), RSA_free)
{
    const std::shared_ptr<BN_CTX> context(BN_CTX_new(), BN_CTX_free);
    BIGNUM *p = nullptr, *q = nullptr;
    BN_hex2bn(&p, pHex.c_str());
    BN_hex2bn(&q, qHex.c_str());
    BIGNUM *n = BN_new(), *e = BN_new(), *dp = BN_new(), *dq = BN_new();
    BN_mul(n, p, q, context.get());
    BN_set_word(e, 65537);
    const Number p1(BN_dup(p), BN_free), q1(BN_dup(q), BN_free), phi(BN_new(), BN_free);
    BN_sub_word(p1.get(), 1);
    BN_sub_word(q1.get(), 1);
    BN_mul(phi.get(), p1.get(), q1.get(), context.get());
    BIGNUM *d = BN_mod_inverse(nullptr, e, phi.get(), context.get());
    BN_mod(dp, d, p1.get(), context.get());
    BN_mod(dq, d, q1.get(), context.get());
    RSA_set0_key(rsa_.get(), n, e, d);
    RSA_set0_factors(rsa_.get(), p, q);
    RSA_set0_crt_params(rsa_.get(), dp, dq, BN_mod_inverse(nullptr, q, p, context.get()));
}

std::vector<std::pair<std::string, std::string>> OpenSslKey::Parts() const
{
    const RSA *key = rsa_.get();
    return {{"Modulus", ToBytes(RSA_get0_n(key))},     {"Exponent", ToBytes(RSA_get0_e(key))},
            {"P", ToBytes(RSA_get0_p(key))},           {"Q", ToBytes(RSA_get0_q(key))},
            {"DP", ToBytes(RSA_get0_dmp1(key))},       {"DQ", ToBytes(RSA_get0_dmq1(key))},
            {"InverseQ", ToBytes(RSA_get0_iqmp(key))}, {"D", ToBytes(RSA_get0_d(key))}};
}

std::string OpenSslKey::Xml(std::size_t parts) const
{
    std::string xml;
    for (const auto &[tag, bytes] : Parts()) {
        xml += parts-- > 0 ? Element(tag, bytes) : "";
    }
    return "<RSAKeyValue>" + xml + "</RSAKeyValue>";
}

std::string OpenSslKey::PublicXml() const
{
    return Xml(2);
}

std::string OpenSslKey::PrivateXml() const
{
    return Xml(8);
}

std::string OpenSslKey::Raw(bool privateKey, const std::string &block) const
{
    std::string result(size(), 0);
    const auto apply = privateKey ? RSA_private_encrypt : RSA_public_encrypt;
    const int length =
        apply(static_cast<int>(block.size()), Unsigned(block), Unsigned(result), rsa_.get(), RSA_NO_PADDING);
    EXPECT_EQ(length, RSA_size(rsa_.get())) << "not a block of this key";
    return result;
}

std::string OpenSslKey::Decode(bool privateKey, int padding, const std::string &cipher) const
{
    std::string text;
    for (std::size_t at = 0; at < cipher.size(); at += size()) {
        text += Unpad(padding, Raw(!privateKey, cipher.substr(at, size())));
    }
    return text;
}

} // namespace pavonix::test
