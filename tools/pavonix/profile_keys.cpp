#include "profile_keys.h"

#include "rsa/cipher/zt_rsa.h"
#include "token/token.h"

#include <stdexcept>

namespace client {

namespace {

std::string WithLog(const std::string &problem, pavonix::ZtRsa &engine)
{
    pavonix::ZtString log;
    engine.get_LastErrorText(&log);
    return problem + "; the engine's log:\n" + log.c_str();
}

// Answers what keeps a shop from opening the token with the public key, or an empty text.
std::string OpenLikeAShop(const std::string &token, const std::string &publicXml)
try {
    const shop::PublicKey key = shop::ReadPublicKey(publicXml);
    if (!shop::OpenToken(token, key)) {
        return "a token made with Private-Key does not open with Public-Key: they are no pair, or DP, DQ or InverseQ "
               "is missing or wrong";
    }
    const int bits = EVP_PKEY_get_bits(key.get());
    if (bits % 8 != 0) {
        return "the modulus has " + std::to_string(bits) +
               " bits, no multiple of 8: now and then a token comes out short and is sent empty";
    }
    return "";
} catch (const std::runtime_error &failure) {
    return std::string("Public-Key cannot be registered at a shop: ") + failure.what();
}

} // namespace

std::vector<std::string> CheckKeys(const std::string &publicXml, const std::string &privateXml)
{
    pavonix::ZtRsa engine;
    engine.put_OAEP(true);
    std::vector<std::string> problems;
    if (!engine.ImportPublicKey(publicXml.c_str())) {
        problems.push_back(WithLog("Public-Key does not import", engine));
    }
    if (!engine.ImportPrivateKey(privateXml.c_str())) {
        problems.push_back(WithLog("Private-Key does not import", engine));
    }
    if (!problems.empty()) {
        return problems;
    }
    pavonix::ZtString token;
    if (!engine.EncryptStringENC(shop::FormatTimeText(shop::WallTimeNow()).c_str(), true, &token)) {
        return {WithLog("the keys make no token", engine)};
    }
    const std::string problem = OpenLikeAShop(token.c_str(), publicXml);
    return problem.empty() ? problems : std::vector{problem};
}

} // namespace client
