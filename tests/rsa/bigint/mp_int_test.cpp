#include "rsa/bigint/mp_int.h"

#include "support/openssl_key.h"
#include "support/tap.h"
#include "support/texts.h"

#include <gtest/gtest.h>
#include <random>

using namespace pavonix::test;
using pavonix::DataBuffer;

namespace {

using Integer = pavonix::mp_int;

bool Read(Integer *value, const std::string &bytes)
{
    return value->ReadUnsignedBytes(Data(bytes), static_cast<std::uint32_t>(bytes.size()));
}

std::string Bytes(const Integer &value)
{
    DataBuffer bytes;
    EXPECT_TRUE(value.WriteUnsignedBytes(&bytes));
    return BytesOf(bytes);
}

} // namespace

TEST(MpInt, BytesOfEveryLength)
{
    std::mt19937 random(1);
    for (std::size_t length = 0; length <= 300; ++length) {
        std::string bytes(length % 3, 0); // leading zeros
        for (std::size_t i = 0; i < length; ++i) {
            bytes.push_back(static_cast<char>(random()));
        }
        const Number expected = ToNumber(bytes);
        Integer value;
        ASSERT_TRUE(Read(&value, bytes));
        EXPECT_EQ(Bytes(value), ToBytes(expected.get()));
        EXPECT_EQ(value.CountBits(), BN_num_bits(expected.get()));
        EXPECT_EQ(value.UnsignedByteSize(), static_cast<std::uint32_t>(BN_num_bytes(expected.get())));
    }
    // 33 full digits, of which the last byte is in the last digit.
    Integer full, one, difference;
    const std::string bytes = "\x0F" + std::string(247, '\xFF');
    ASSERT_TRUE(Read(&full, bytes) && Read(&one, "\1"));
    ASSERT_EQ(Sub(full, one, &difference), MP_OKAY);
    EXPECT_EQ(Bytes(difference), bytes.substr(0, 247) + "\xFE");
    Integer value;
    ASSERT_TRUE(Read(&value, "ab"));
    DataBuffer output;
    ASSERT_TRUE(output.Append("x", 1) && value.WriteUnsignedBytes(&output));
    EXPECT_EQ(BytesOf(output), "xab");
    EXPECT_FALSE(value.ReadBase64(nullptr) || value.ReadBase64("") || value.ReadBase64("T") || value.ReadBase64("!="));
    EXPECT_EQ(Bytes(value), "ab");
    EXPECT_TRUE(value.ReadBase64("AAAB"));
    EXPECT_EQ(Bytes(value), "\1");
}

// Every kind of modulus: 0, 1, powers of two, even, odd, all ones, several digits.
TEST(MpInt, ArithmeticAgreesWithOpenSsl)
{
    const std::string values[] = {"",
                                  "01",
                                  "02",
                                  "03",
                                  "04",
                                  "06",
                                  "010001",
                                  "8000000000000000",
                                  std::string(32, 'F'),
                                  "FEDCBA9876543210FEDCBA9876543211",
                                  "10" + std::string(46, '0'),
                                  std::string(51, 'F') + "E"};
    const std::shared_ptr<BN_CTX> context(BN_CTX_new(), BN_CTX_free);
    const Number expected = ToNumber("");
    for (const std::string &g : values) {
        for (const std::string &x : values) {
            Integer a, b, y;
            ASSERT_TRUE(Read(&a, FromHex(g)) && Read(&b, FromHex(x)));
            const Number bigA = ToNumber(FromHex(g)), bigB = ToNumber(FromHex(x));
            EXPECT_EQ(Compare(a, b), BN_cmp(bigA.get(), bigB.get()));
            for (const std::string &m : values) {
                SCOPED_TRACE(g + " " + x + " mod " + m);
                Integer modulus;
                ASSERT_TRUE(Read(&modulus, FromHex(m)));
                const Number bigM = ToNumber(FromHex(m));
                const bool possible = !m.empty();
                EXPECT_EQ(ExptMod(a, b, modulus, &y) == MP_OKAY, possible);
                if (possible) {
                    BN_mod_exp(expected.get(), bigA.get(), bigB.get(), bigM.get(), context.get());
                    EXPECT_EQ(ToHex(Bytes(y)), ToHex(ToBytes(expected.get())));
                }
                // (a - b) * b mod m: a negative factor, a non-negative result
                ASSERT_EQ(Sub(a, b, &y), MP_OKAY);
                EXPECT_EQ(MulMod(y, b, modulus, &y) == MP_OKAY, possible);
                if (possible) {
                    BN_sub(expected.get(), bigA.get(), bigB.get());
                    BN_mul(expected.get(), expected.get(), bigB.get(), context.get());
                    BN_nnmod(expected.get(), expected.get(), bigM.get(), context.get());
                    EXPECT_EQ(ToHex(Bytes(y)), ToHex(ToBytes(expected.get())));
                }
            }
        }
    }
}

TEST(MpInt, WithoutMemoryIsUnusableUntilTheNextRead)
{
    Integer good, y;
    ASSERT_TRUE(Read(&good, "abc"));
    pavonix::tap::FailNth(1, true);
    Integer unborn;
    EXPECT_FALSE(Read(&unborn, "abc"));
    Integer *large = &y;
    const int blocks = pavonix::tap::Held().blocks;
    EXPECT_FALSE(Read(large, std::string(10000, 'x')));
    EXPECT_EQ(pavonix::tap::Held().blocks, blocks - 1); // its digits are freed
    pavonix::tap::FailNone();
    EXPECT_EQ(unborn.CountBits() + large->CountBits(), 0);
    EXPECT_EQ(Bytes(unborn), "");
    EXPECT_EQ(Compare(unborn, good), -1);
    Integer result;
    for (const Integer *bad : {&unborn, large}) {
        EXPECT_EQ(Add(*bad, good, &result), MP_MEM);
        EXPECT_EQ(Sub(good, *bad, &result), MP_MEM);
        EXPECT_EQ(Mul(good, good, large), MP_MEM);
        EXPECT_EQ(MulMod(good, good, *bad, &result), MP_MEM);
        EXPECT_EQ(ExptMod(good, *bad, good, &result), MP_MEM);
    }
    EXPECT_TRUE(Read(&unborn, "\2"));
    EXPECT_EQ(Mul(unborn, unborn, &result), MP_OKAY);
    EXPECT_EQ(Bytes(result), "\4");
}
