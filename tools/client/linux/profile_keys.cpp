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

// Without DP a token is 1 modulo P, without DQ 1 modulo Q: the greatest common divisor of
// the token minus 1 and the modulus is then that prime.
bool DisclosesPrime(const std::string &token, const token::PublicKey &key)
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

const char *const kNoProblems = "no problems; a shop with this public key accepts its tokens";

std::vector<std::string> CheckToken(const std::string &token, const std::string &publicXml)
try {
    std::vector<std::string> problems;
    const token::PublicKey key = token::ReadPublicKey(publicXml);
    if (const int bits = token::ModulusBits(key); bits % 8 != 0) {
        problems.push_back("the modulus has " + std::to_string(bits) +
                           " bits, which is not a multiple of 8: some tokens are too short and are sent empty");
    }
    if (!token::OpenToken(token, key)) {
        problems.push_back("a token made with Private-Key cannot be opened with Public-Key: they are not a pair, or "
                           "DP, DQ or InverseQ is missing or wrong");
        if (DisclosesPrime(token, key)) {
            problems.push_back("Private-Key is compromised: without DP or DQ every token discloses one of its primes; "
                               "generate and register a new key pair");
        }
    }
    return problems;
} catch (const std::runtime_error &failure) {
    return {std::string("Public-Key cannot be registered in a shop: ") + failure.what()};
}

} // namespace client
