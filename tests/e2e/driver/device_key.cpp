#define OPENSSL_SUPPRESS_DEPRECATED // the padding alone, without its exponent, has no newer interface
#include "device_key.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <openssl/bn.h>
#include <openssl/evp.h>
#include <openssl/rsa.h>
#include <regex>
#include <vector>

namespace pavonix::e2e {

namespace {

std::string Base64(const std::vector<unsigned char> &bytes)
{
    std::string text(4 * ((bytes.size() + 2) / 3) + 1, '\0');
    text.resize(static_cast<std::size_t>(
        EVP_EncodeBlock(reinterpret_cast<unsigned char *>(text.data()), bytes.data(), static_cast<int>(bytes.size()))));
    return text;
}

std::string Element(const std::string &name, const BIGNUM *value)
{
    std::vector<unsigned char> bytes(static_cast<std::size_t>(BN_num_bytes(value)));
    BN_bn2bin(value, bytes.data());
    return "<" + name + ">" + Base64(bytes) + "</" + name + ">";
}

std::vector<unsigned char> Decode(const std::string &text)
{
    std::vector<unsigned char> bytes(text.size());
    const int length = EVP_DecodeBlock(bytes.data(), reinterpret_cast<const unsigned char *>(text.data()),
                                       static_cast<int>(text.size()));
    const auto padding = std::count(text.begin(), text.end(), '=');
    bytes.resize(length < 0 ? 0 : static_cast<std::size_t>(length - padding));
    return bytes;
}

} // namespace

DeviceKey::DeviceKey(int bits) : key_(RSA_new(), RSA_free)
{
    const std::unique_ptr<BIGNUM, decltype(&BN_free)> exponent(BN_new(), BN_free);
    BN_set_word(exponent.get(), RSA_F4);
    RSA_generate_key_ex(key_.get(), bits, exponent.get(), nullptr);
}

std::string DeviceKey::PublicXml() const
{
    return "<RSAKeyValue>" + Element("Modulus", RSA_get0_n(key_.get())) + Element("Exponent", RSA_get0_e(key_.get())) +
           "</RSAKeyValue>";
}

std::string DeviceKey::PrivateXml() const
{
    const RSA *key = key_.get();
    return "<RSAKeyValue>" + Element("Modulus", RSA_get0_n(key)) + Element("Exponent", RSA_get0_e(key)) +
           Element("P", RSA_get0_p(key)) + Element("Q", RSA_get0_q(key)) + Element("DP", RSA_get0_dmp1(key)) +
           Element("DQ", RSA_get0_dmq1(key)) + Element("InverseQ", RSA_get0_iqmp(key)) + Element("D", RSA_get0_d(key)) +
           "</RSAKeyValue>";
}

std::optional<std::string> DeviceKey::Open(const std::string &token) const
{
    const std::vector<unsigned char> cipher = Decode(token);
    const int size = RSA_size(key_.get());
    if (cipher.empty() || cipher.size() % static_cast<std::size_t>(size) != 0) {
        return std::nullopt;
    }
    std::string text;
    for (std::size_t i = 0; i < cipher.size(); i += static_cast<std::size_t>(size)) {
        std::vector<unsigned char> block(static_cast<std::size_t>(size)), message(block);
        if (RSA_public_decrypt(size, cipher.data() + i, block.data(), key_.get(), RSA_NO_PADDING) != size) {
            return std::nullopt;
        }
        const int length = RSA_padding_check_PKCS1_OAEP(message.data(), size, block.data(), size, size, nullptr, 0);
        if (length < 0) {
            return std::nullopt;
        }
        text.append(reinterpret_cast<const char *>(message.data()), static_cast<std::size_t>(length));
    }
    return text;
}

void ExpectFreshToken(const DeviceKey &key, const std::string &token)
{
    const std::optional<std::string> text = key.Open(token);
    ASSERT_TRUE(text) << "not a token of this device: " << token;
    std::smatch part;
    ASSERT_TRUE(std::regex_match(*text, part,
                                 std::regex(R"((20\d\d)-([1-9]\d?)-([1-9]\d?) (\d|[1-9]\d):(\d|[1-9]\d):(\d|[1-9]\d))"
                                            R"(\.-?(\d{3}))")))
        << *text;
    std::tm time = {};
    time.tm_year = std::stoi(part[1]) - 1900;
    time.tm_mon = std::stoi(part[2]) - 1;
    time.tm_mday = std::stoi(part[3]);
    time.tm_hour = std::stoi(part[4]);
    time.tm_min = std::stoi(part[5]);
    time.tm_sec = std::stoi(part[6]);
    time.tm_isdst = -1;
    EXPECT_LE(std::abs(std::difftime(std::time(nullptr), std::mktime(&time))), 5.0) << *text;
    EXPECT_LE(std::stoi(part[7]), 998) << *text;
}

} // namespace pavonix::e2e
