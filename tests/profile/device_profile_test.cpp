#include "profile/device_profile.h"
#include "profile/line_reader.h"
#include "support/sandbox.h"
#include "support/tap.h"

#include <gtest/gtest.h>

#include <new>
#include <utility>

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

// The scenarios test the values that requests contain.
TEST_F(Profiles, KeepOnlyTheirNumber)
{
    Read("User-Serial: S\nUser-No: 7x");
    Read("User-Serial: other\n");
    EXPECT_EQ(profile.userNumber(), 7) << "kept from the earlier file";
    profile.Clear();
    EXPECT_EQ(serial(), "");
    profile.Read(box.Path("missing").c_str());
    profile.Read(nullptr);
    EXPECT_EQ(serial(), "");
}

// Buffered lines are old; the rest is read from the current file.
TEST_F(Profiles, RewrittenWhileTheyAreRead)
{
    std::string filler;
    for (int i = 0; i < 5; ++i) {
        filler += std::string(1000, '-') + '\n';
    }
    const std::string fresh = "User-Serial: new\n" + filler + "User-Id: 2\n";
    const struct {
        const char *name, *bytes; // written to this file, which then becomes the profile
        int id;
    } rows[] = {{"new", fresh.c_str(), 1}, {"p.txt", fresh.c_str(), 2}, {"p.txt", "", 0}};
    for (const auto &[name, bytes, id] : rows) {
        box.Write("p.txt", "User-Serial: old\n" + filler + "User-Id: 1\n");
        tap::Before("ReadStream", [&, first = true]() mutable {
            if (!std::exchange(first, false)) {
                box.Write(name, bytes);
                std::filesystem::rename(box.root() / name, box.root() / "p.txt");
            }
        });
        profile.Read(box.Path("p.txt").c_str());
        EXPECT_EQ(serial() + std::to_string(profile.userId()), "old" + std::to_string(id));
    }
}

TEST_F(Profiles, ErasesTheirLines)
{
    alignas(LineReader) static char room[sizeof(LineReader)];
    const std::u16string path = box.Write("p.txt", "Private-Key: secret\n");
    platform::Stream *stream = platform::OpenStream(path.c_str(), platform::StreamMode::kRead);
    auto *reader = new (room) LineReader(stream);
    EXPECT_STREQ(reader->ReadLine(), "Private-Key: secret");
    reader->~LineReader();
    EXPECT_TRUE(platform::CloseStream(stream));
    EXPECT_EQ(std::string_view(room, sizeof room).find("secret"), std::string_view::npos);
}
