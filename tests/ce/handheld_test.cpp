// Calls where a handheld differs from a desktop.
#include "device_test.h"
#include "driver/scenario.h"

#include <filesystem>

namespace pavonix::ce {

namespace {

class Handheld : public DeviceTest {};

const std::string kGoods = e2e::Announce(3000, e2e::Bytes(3000));

TEST_F(Handheld, AFileThatCannotBeDeletedStaysAsItIs)
{
    e2e::WriteFile(Target(), "old");
    ASSERT_EQ("ok", Ask("hold " + Target()));
    EXPECT_EQ(200, Call(e2e::Export::kList, kGoods));
    EXPECT_EQ("old", e2e::ReadFile(Target()));
    ASSERT_EQ("ok", Ask("release"));

    std::filesystem::permissions(Target(), std::filesystem::perms::owner_read);
    EXPECT_EQ(200, Call(e2e::Export::kList, kGoods));
    EXPECT_EQ("old", e2e::ReadFile(Target()));

    std::filesystem::permissions(Target(), std::filesystem::perms::owner_write);
    EXPECT_EQ(200, Call(e2e::Export::kList, kGoods));
    EXPECT_EQ(e2e::Bytes(3000), e2e::ReadFile(Target()));
}

// A failed call calls WSACleanup more often than WSAStartup, at the expense of the
// application's own starts. Later calls work nevertheless.
TEST_F(Handheld, AFailedCallTakesAStartOfWinsockFromTheApplication)
{
    const OtherRunner runner(ThePrograms().dll);
    ASSERT_EQ("winsock 1", Ask("winsock 1"));
    EXPECT_EQ(200, Call(e2e::Export::kList, kGoods));
    EXPECT_EQ("winsock 1", Ask("winsock 0"));
    EXPECT_EQ(0, Call(e2e::Export::kList, 1));
    EXPECT_EQ("winsock 0", Ask("winsock 0"));
    ASSERT_EQ("winsock 3", Ask("winsock 3"));
    EXPECT_EQ(0, Call(e2e::Export::kList, 1));
    EXPECT_NE("winsock 0", Ask("winsock 0"));
    EXPECT_EQ(200, Call(e2e::Export::kList, kGoods));
    EXPECT_TRUE(e2e::TheSuite().caller->Quit()) << e2e::TheSuite().caller->ErrorOutput();
}

// The provider's functions are an optional component; without them rand makes the seed.
TEST_F(Handheld, BuysWithoutCrypt)
{
    for (const char *missing : {"CryptAcquireContextW", "CryptGenRandom", "CryptReleaseContext"}) {
        const OtherRunner runner(ThePrograms().dll, "", std::string("--without=") + missing);
        EXPECT_EQ(403, Call(e2e::Export::kBuy, kRefusal)) << missing;
        const bool seeds = std::string(missing) != "CryptReleaseContext";
        EXPECT_EQ(seeds ? 3 * 250 : 0, ImportCalls()["rand"]) << missing;
    }
    EXPECT_EQ(403, Call(e2e::Export::kBuy, kRefusal));
    EXPECT_EQ(0, ImportCalls()["rand"]) << "with all three";
}

TEST_F(Handheld, AJapaneseDeviceReadsItsMessageInPairsOfBytes)
{
    const OtherRunner runner(ThePrograms().dll, "", "--ansi=932");
    const std::string reply = "HTTP/1.1 403 No\r\nX-Error-Code: 906\r\nX-Error-Message: \x8E\x9E\x8Cv\\\r\n\r\n";
    ASSERT_EQ(403, Call(e2e::Export::kBuy, reply));
    constexpr char16_t kMessage[] =
        u" \u6642\u8A08\\"; // "clock"; the second byte of its second character is that of a letter
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(kMessage), sizeof kMessage),
              Record().substr(12, sizeof kMessage));
}

} // namespace

} // namespace pavonix::ce
