// The exponentiation with keys that belong to no primes: the formula's result or
// the documented message, and never a crash or a hang.
#include "rsa/cipher/rsa_exponentiation.h"
#include "rsa/log/logger.h"
#include "support/rsa_keys.h"
#include "support/texts.h"

#include <cstring>
#include <gtest/gtest.h>
#include <map>

using namespace pavonix;
using namespace pavonix::test;

namespace {

using Parts = std::map<std::string, std::string>; // by element name, bytes

Parts PartsOf(const TestKey &key)
{
    const auto parts = key.Parts();
    return Parts(parts.begin(), parts.end());
}

// What must come out, by OpenSSL's big integers: bytes, or the error's text.
std::string Expected(const std::string &input, bool privateKey, const Parts &parts)
{
    const std::shared_ptr<BN_CTX> context(BN_CTX_new(), BN_CTX_free);
    const auto part = [&](const char *name) { return ToNumber(parts.at(name)); };
    const Number m = ToNumber(input), n = part("Modulus"), c = ToNumber(""), b = ToNumber("");
    if (BN_cmp(n.get(), m.get()) < 0) {
        return "Invalid RSA input value";
    }
    if (!privateKey) {
        BN_mod_exp(c.get(), m.get(), part("Exponent").get(), n.get(), context.get());
    } else if (BN_is_zero(part("P").get())) {
        return "Modular exponentiation (1) failed";
    } else if (BN_is_zero(part("Q").get())) {
        return "Modular exponentiation (2) failed";
    } else {
        BN_mod_exp(c.get(), m.get(), part("DP").get(), part("P").get(), context.get());
        BN_mod_exp(b.get(), m.get(), part("DQ").get(), part("Q").get(), context.get());
        BN_sub(c.get(), c.get(), b.get());
        BN_mul(c.get(), c.get(), part("InverseQ").get(), context.get());
        BN_nnmod(c.get(), c.get(), part("P").get(), context.get());
        BN_mul(c.get(), c.get(), part("Q").get(), context.get());
        BN_add(c.get(), c.get(), b.get());
    }
    if (BN_num_bytes(c.get()) > BN_num_bytes(n.get())) {
        return "Modular exponentiation output size is invalid";
    }
    std::string bytes = ToBytes(c.get());
    const bool extend = !bytes.empty() && static_cast<std::size_t>(BN_num_bits(n.get()) / 8) == input.size();
    return ToHex(extend ? std::string(input.size() - bytes.size(), 0) + bytes : bytes);
}

std::string Actual(const std::string &input, std::int32_t keyChoice, const Parts &parts)
{
    std::string xml = "<K>";
    for (const auto &[tag, bytes] : parts) {
        xml += Element(tag, bytes.empty() ? std::string(1, 0) : bytes);
    }
    RsaKey key;
    ReadTestKey(xml, &key);
    Logger log;
    DataBuffer output;
    const bool success =
        ExponentiateRsa(Data(input), static_cast<std::uint32_t>(input.size()), keyChoice, key, true, &output, log);
    const std::string text = LogText(log);
    const std::size_t last = text.rfind("  ") + 2;
    return success ? ToHex(BytesOf(output)) : text.substr(last, text.size() - 2 - last);
}

} // namespace

TEST(OddKeys, PartsOfEveryKind)
{
    const Parts good = PartsOf(KeyOfBits(1024));
    const std::string input = std::string(1, 0) + std::string(127, '\x5A');
    std::map<std::string, int> outcomes;
    for (const char *name : {"Modulus", "Exponent", "P", "Q", "DP", "DQ", "InverseQ"}) {
        std::string even = good.at(name);
        even.back() = static_cast<char>(even.back() & ~1);
        const std::string values[] = {"",   std::string(1, 1),   std::string(1, 2), std::string(1, 4),
                                      even, std::string(16, 32), even + "larger",   std::string(60, '\xFF')};
        for (const std::string &value : values) {
            SCOPED_TRACE(std::string(name) + " = " + ToHex(value));
            Parts parts = good;
            parts[name] = value;
            for (const bool privateKey : {false, true}) {
                const std::string expected = Expected(input, privateKey, parts);
                EXPECT_EQ(Actual(input, privateKey ? kPrivateKey : kPublicKey, parts), expected);
                ++outcomes[expected.find(' ') == std::string::npos ? "result" : expected];
            }
        }
    }
    EXPECT_EQ(outcomes.size(), 5u); // every kind was met
    EXPECT_EQ(Actual(input, 2, good), "Invalid public/private key choice");
}

TEST(OddKeys, OtherInputs)
{
    const Parts good = PartsOf(KeyOfBits(1024));
    const std::string modulus = good.at("Modulus");
    std::string above = modulus;
    ++above.back();
    EXPECT_EQ(Actual(modulus, kPublicKey, good), ""); // equal to the modulus passes and gives 0
    EXPECT_EQ(Actual(above, kPublicKey, good), "Invalid RSA input value");
    EXPECT_EQ(Actual("", kPrivateKey, good), "");
    Parts noModulus = good;
    noModulus["Modulus"] = "";
    EXPECT_EQ(Actual("", kPublicKey, noModulus), "Modular exponentiation (A) failed");
    Parts publicOnly = good;
    publicOnly.erase("P");
    EXPECT_EQ(Actual("x", kPrivateKey, publicOnly), "Private key required, but not provided");
}
