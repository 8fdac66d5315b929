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
    std::string text = problem + "; the engine's log:\n" + log.c_str();
    text.erase(text.find_last_not_of("\r\n") + 1);
    return text;
}

// Makes a token and opens it with the public key. Answers what went wrong.
std::vector<std::string> TryToken(pavonix::ZtRsa &engine, const token::PublicKey &key)
{
    std::vector<std::string> problems;
    const int bits = EVP_PKEY_get_bits(key.get());
    if (bits % 8 != 0) {
        problems.push_back("the modulus has " + std::to_string(bits) +
                           " bits, no multiple of 8: now and then a token comes out short and is sent empty");
    }
    pavonix::ZtString token;
    if (!engine.EncryptStringENC(token::FormatTimeText(token::WallTimeNow()).c_str(), true, &token)) {
        problems.push_back(WithLog("the keys make no token", engine));
    } else if (!token::OpenToken(token.c_str(), key)) {
        problems.push_back("a token made with Private-Key does not open with Public-Key: they are no pair, or DP, DQ "
                           "or InverseQ is missing or wrong");
    }
    return problems;
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
    try {
        return TryToken(engine, token::ReadPublicKey(publicXml));
    } catch (const std::runtime_error &failure) {
        return {std::string("Public-Key cannot be registered at a shop: ") + failure.what()};
    }
}

} // namespace client
