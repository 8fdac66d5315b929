#include "profile_keys.h"

#include "rsa/cipher/zt_rsa.h"
#include "token/token.h"

#include <openssl/bn.h>
#include <openssl/core_names.h>

#include <memory>
#include <span>
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

using Number = std::unique_ptr<BIGNUM, decltype(&BN_clear_free)>;

Number ToNumber(std::span<const unsigned char> bytes)
{
    return {BN_bin2bn(bytes.data(), static_cast<int>(bytes.size()), nullptr), BN_clear_free};
}

// Without DP a token is 1 modulo P, without DQ 1 modulo Q: whoever reads one has
// that prime as the divisor that the token less 1 and the modulus share.
bool GivesPrimesAway(const std::string &token, const token::PublicKey &key)
{
    const auto ciphertext = token::DecodeBase64(token);
    const auto blockSize = static_cast<std::size_t>(EVP_PKEY_get_size(key.get()));
    BIGNUM *modulus = nullptr;
    EVP_PKEY_get_bn_param(key.get(), OSSL_PKEY_PARAM_RSA_N, &modulus);
    const Number n(modulus, BN_clear_free);
    if (!ciphertext || ciphertext->size() < blockSize || n == nullptr) {
        return false;
    }
    const Number divisor = ToNumber(std::span(*ciphertext).first(blockSize));
    const std::unique_ptr<BN_CTX, decltype(&BN_CTX_free)> context(BN_CTX_new(), BN_CTX_free);
    return BN_sub_word(divisor.get(), 1) == 1 && BN_gcd(divisor.get(), divisor.get(), n.get(), context.get()) == 1 &&
           !BN_is_one(divisor.get());
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
        if (GivesPrimesAway(token.c_str(), key)) {
            problems.push_back("Private-Key gives itself away: without DP or DQ each token shows a prime to whoever "
                               "reads it; the key must be replaced by a new pair");
        }
    }
    return problems;
}

} // namespace

const char *const kNoProblems = "no problems, a shop that knows the public key accepts its tokens";

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
