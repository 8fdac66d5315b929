// The exponentiation with invalid keys: the formula's result or the documented message.
// fuzz/key.cpp tests that others do not crash.
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

std::string Actual(const std::string &input, KeyType exponent, const Parts &parts)
{
    std::string xml = "<K>";
    for (const auto &[tag, bytes] : parts) {
        xml += Element(tag, bytes.empty() ? std::string(1, 0) : bytes);
    }
    RsaKey key;
    ReadTestKey(xml, &key);
    Logger log;
    DataBuffer output;
    const bool success = ExponentiateRsa(Bytes(input), exponent, key, LeadingZeros::kExtend, &output, log);
    const std::string text = LogText(log);
    const std::size_t last = text.rfind("  ") + 2;
    return success ? ToHex(BytesOf(output)) : text.substr(last, text.size() - 2 - last);
}

} // namespace

TEST(OddKeys, PartsWithoutAResult)
{
    const std::string input = std::string(1, 0) + std::string(127, '\x5A'), zero;
    const struct {
        const char *name;
        std::string value;
        KeyType exponent;
        const char *expected;
    } rows[] = {
        {"Modulus", zero, KeyType::kPublic, "Invalid RSA input value"},
        {"P", zero, KeyType::kPrivate, "Modular exponentiation (1) failed"},
        {"Q", zero, KeyType::kPrivate, "Modular exponentiation (2) failed"},
        {"Q", std::string(65, '\xFF'), KeyType::kPrivate, "Modular exponentiation output size is invalid"},
        {"Exponent", zero, KeyType{2}, "Invalid public/private key choice"},
    };
    for (const auto &row : rows) {
        Parts parts = PartsOf(KeyOfBits(1024));
        parts[row.name] = row.value;
        EXPECT_EQ(Actual(input, row.exponent, parts), row.expected);
    }
}

TEST(OddKeys, OtherInputs)
{
    const Parts good = PartsOf(KeyOfBits(1024));
    const std::string modulus = good.at("Modulus");
    std::string above = modulus;
    ++above.back();
    EXPECT_EQ(Actual(modulus, KeyType::kPublic, good), ""); // equal to the modulus passes and gives 0
    EXPECT_EQ(Actual(above, KeyType::kPublic, good), "Invalid RSA input value");
    EXPECT_EQ(Actual("", KeyType::kPrivate, good), "");
    Parts noModulus = good;
    noModulus["Modulus"] = "";
    EXPECT_EQ(Actual("", KeyType::kPublic, noModulus), "Modular exponentiation (A) failed");
    Parts publicOnly = good;
    publicOnly.erase("P");
    EXPECT_EQ(Actual("x", KeyType::kPrivate, publicOnly), "Private key required, but not provided");
}
