#include "profile/call_identity.h"
#include "support/openssl_key.h"
#include "support/sandbox.h"
#include "support/tap.h"

#include <gtest/gtest.h>

using namespace pavonix;

// A token decrypts, with the device's key, to the time of its creation.
TEST(CallIdentity, TakesTheFractionOfItsTimeFromTheTickCount)
{
    const test::OpenSslKey key(1024);
    const Sandbox box;
    const CallIdentity identity(
        box.Write("p.txt", "Public-Key: " + key.PublicXml() + "\nPrivate-Key: " + key.PrivateXml() + "\n").c_str());
    const auto timeAt = [&](const platform::LocalTime &time, std::uint32_t ticks) {
        tap::UseClock(tap::Clock{time, ticks});
        return key.Decode(true, RSA_PKCS1_OAEP_PADDING, test::FromBase64(identity.UserCert().c_str()));
    };
    struct Row {
        std::uint32_t ticks;
        const char *fraction;
    };
    for (const Row &row : {Row{1041, "042"},
                           {999, "000"},
                           {1000, "001"},
                           {998, "998"},
                           {0, "000"},
                           {0x7FFFFFFF, "280"},  // 2147483647 mod 999
                           {0x80000000, "-281"}, // -2147483648: the sign of the tick count stays
                           {0xFFFFFFFF, "-001"}}) {
        EXPECT_EQ(timeAt({2010, 3, 5, 9, 7, 3}, row.ticks), std::string("2010-3-5 9:7:3.") + row.fraction);
    }
    EXPECT_EQ(timeAt({2010, 12, 31, 23, 59, 59}, 0x80000000), "2010-12-31 23:59:59.-281");
    tap::Reset();
    (void)identity.UserCert();
    EXPECT_EQ(tap::CountOf("ReadLocalTime"), 1) << "a clock that is set back meanwhile does not affect a token";
}
