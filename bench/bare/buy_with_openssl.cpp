#include "bare/buy_with_openssl.h"

#include "bare/curl_transfer.h"
#include "harness/key.h"

#define OPENSSL_SUPPRESS_DEPRECATED // the padding and the raw operation have no newer call for a private key
#include <chrono>
#include <ctime>
#include <fstream>
#include <map>
#include <openssl/evp.h>
#include <openssl/rsa.h>
#include <vector>

namespace pavonix::bench {

namespace {

using Profile = std::map<std::string, std::string>;

Profile ReadProfile(const std::string &path)
{
    Profile profile;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        const std::size_t separator = line.find(": ");
        if (separator != std::string::npos) {
            profile[line.substr(0, separator)] = line.substr(separator + 2);
        }
    }
    return profile;
}

BIGNUM *Number(const std::string &xml, const char *element)
{
    const std::string bytes = KeyPart(xml, element);
    return BN_bin2bn(reinterpret_cast<const unsigned char *>(bytes.data()), static_cast<int>(bytes.size()), nullptr);
}

RSA *MakeKey(const std::string &xml)
{
    RSA *key = RSA_new();
    RSA_set0_key(key, Number(xml, "Modulus"), Number(xml, "Exponent"), nullptr);
    RSA_set0_factors(key, Number(xml, "P"), Number(xml, "Q"));
    RSA_set0_crt_params(key, Number(xml, "DP"), Number(xml, "DQ"), Number(xml, "InverseQ"));
    return key;
}

std::string TimeText()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const std::time_t seconds = std::chrono::duration_cast<std::chrono::seconds>(now).count();
    const long milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(now).count() % 1000;
    std::tm local = {};
    localtime_r(&seconds, &local);
    char text[64];
    std::snprintf(text, sizeof text, "%d-%d-%d %d:%d:%d.%.3ld", local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                  local.tm_hour, local.tm_min, local.tm_sec, milliseconds);
    return text;
}

// OAEP, the private operation and base64; empty on failure.
std::string MakeToken(const std::string &keyXml, const std::string &text)
{
    RSA *key = MakeKey(keyXml);
    const int size = RSA_size(key);
    std::vector<unsigned char> block(static_cast<std::size_t>(size)), cipher(block.size());
    const auto *bytes = reinterpret_cast<const unsigned char *>(text.data());
    const bool done =
        RSA_padding_add_PKCS1_OAEP(block.data(), size, bytes, static_cast<int>(text.size()), nullptr, 0) == 1 &&
        RSA_private_encrypt(size, block.data(), cipher.data(), key, RSA_NO_PADDING) == size;
    RSA_free(key);
    std::string token(block.size() * 4 / 3 + 5, 0);
    token.resize(static_cast<std::size_t>(
        EVP_EncodeBlock(reinterpret_cast<unsigned char *>(token.data()), cipher.data(), size)));
    return done ? token : std::string();
}

} // namespace

long BuyWithOpenSsl(const std::string &profilePath, const std::string &url)
{
    Profile profile = ReadProfile(profilePath);
    const std::string token = MakeToken(profile["Private-Key"], TimeText());
    const std::vector<std::string> headers = {"User-Agent: " + profile["User-Agent"],
                                              "User-Serial: " + profile["User-Serial"],
                                              "User-ID: " + profile["User-Id"], "User-Cert: " + token};
    return token.empty() ? 0 : CurlPost(url, headers, "type=1&id=2&force=0");
}

} // namespace pavonix::bench
