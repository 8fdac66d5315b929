#include "profile/device_profile.h"
#include "profile/line_reader.h"
#include "support/sandbox.h"
#include "support/tap.h"

#include <gtest/gtest.h>

#include <new>

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

    using namespace std::string_literals;
    Read("\0User-Serial: no\n\nUser-Serial: S\n"s);
    EXPECT_EQ(serial(), "S") << "a line that begins with NUL is an empty one, not the end";
}

TEST_F(Profiles, LeavesNoLineBehind)
{
    alignas(LineReader) static char room[sizeof(LineReader)];
    const std::u16string path = box.Write("p.txt", "Private-Key: secret\n");
    platform::Stream *stream = platform::OpenStream(path.c_str(), platform::StreamMode::kRead);
    auto *reader = new (room) LineReader(stream);
    EXPECT_STREQ(reader->ReadLine(), "Private-Key: secret");
    reader->~LineReader();
    platform::CloseStream(stream);
    EXPECT_EQ(std::string_view(room, sizeof room).find("secret"), std::string_view::npos);
}
