#include "profile_keys.h"

#include "token/token.h"

#include <openssl/bn.h>

#include <memory>
#include <span>
#include <stdexcept>

namespace client {

namespace {

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
    const token::Bytes modulus = token::ModulusOf(key);
    const std::size_t blockSize = modulus.size();
    const Number n = ToNumber(modulus);
    if (!ciphertext || ciphertext->size() < blockSize || n == nullptr) {
        return false;
    }
    const Number divisor = ToNumber(std::span(*ciphertext).first(blockSize));
    const std::unique_ptr<BN_CTX, decltype(&BN_CTX_free)> context(BN_CTX_new(), BN_CTX_free);
    return BN_sub_word(divisor.get(), 1) == 1 && BN_gcd(divisor.get(), divisor.get(), n.get(), context.get()) == 1 &&
           !BN_is_one(divisor.get());
}

} // namespace

const char *const kNoProblems = "no problems, a shop that knows the public key accepts its tokens";

std::vector<std::string> CheckToken(const std::string &token, const std::string &publicXml)
try {
    std::vector<std::string> problems;
    const token::PublicKey key = token::ReadPublicKey(publicXml);
    if (const int bits = token::ModulusBits(key); bits % 8 != 0) {
        problems.push_back("the modulus has " + std::to_string(bits) +
                           " bits, no multiple of 8: now and then a token comes out short and is sent empty");
    }
    if (!token::OpenToken(token, key)) {
        problems.push_back("a token made with Private-Key does not open with Public-Key: they are no pair, or DP, DQ "
                           "or InverseQ is missing or wrong");
        if (GivesPrimesAway(token, key)) {
            problems.push_back("Private-Key gives itself away: without DP or DQ each token shows a prime to whoever "
                               "reads it; the key must be replaced by a new pair");
        }
    }
    return problems;
} catch (const std::runtime_error &failure) {
    return {std::string("Public-Key cannot be registered at a shop: ") + failure.what()};
}

} // namespace client
