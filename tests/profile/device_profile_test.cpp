#include "profile/credentials.h"
#include "profile/device_profile.h"
#include "support/sandbox.h"
#include "support/tap.h"

#include <gtest/gtest.h>

using namespace pavonix;

namespace {

class Profiles : public testing::Test {
protected:
    void Read(const std::string &bytes) { profile.Read(box.Write("p.txt", bytes).c_str()); }
    std::string serial() const { return profile.userSerial().c_str(); }

    Sandbox box;
    DeviceProfile profile;
};

} // namespace

TEST_F(Profiles, ReadsItsKeys)
{
    Read("User-Agent: U: a\nPublic-Key: <P/>\nnothing here\n\nPrivate-Key: <K/>\nUser-Serial: S\n"
         "User-Id: 42\nUser-No: 7x");
    EXPECT_STREQ(profile.userAgent().c_str(), "U: a");
    EXPECT_STREQ(profile.publicKeyXml().c_str(), "<P/>");
    EXPECT_STREQ(profile.privateKeyXml().c_str(), "<K/>");
    EXPECT_EQ(serial(), "S");
    EXPECT_EQ(profile.userId(), 42);
    EXPECT_EQ(profile.userNumber(), 7) << "a last line needs no line feed";

    Read("User-Serial: other\n");
    EXPECT_STREQ(profile.userAgent().c_str(), "");
    EXPECT_EQ(profile.userId(), 0);
    EXPECT_EQ(profile.userNumber(), 7) << "kept from the earlier file";
    profile.Clear();
    EXPECT_EQ(serial(), "");
    profile.Read(box.Path("missing").c_str());
    profile.Read(nullptr);
    EXPECT_EQ(serial(), "");
}

TEST(Timestamp, TakesItsFractionFromTheTickCount)
{
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
        tap::UseClock(tap::Clock{{2010, 3, 5, 9, 7, 3}, row.ticks});
        EXPECT_STREQ(MakeTimestamp().c_str(), (std::string("2010-3-5 9:7:3.") + row.fraction).c_str());
    }
    tap::UseClock(tap::Clock{{2010, 12, 31, 23, 59, 59}, 0x80000000});
    EXPECT_STREQ(MakeTimestamp().c_str(), "2010-12-31 23:59:59.-281");
    tap::Reset();
}
