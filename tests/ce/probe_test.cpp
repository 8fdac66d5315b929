// The runner itself, by an image that asks for each thing which a device answers in
// a way of its own, or which no device forgives.
#include "device_test.h"
#include "probe/probes.h"

#include <filesystem>

namespace pavonix::ce {

namespace {

constexpr int kAnyAnswer = -2;

class ProbeTest : public testing::Test {
protected:
    // The probe's answer, nullopt when the runner died of it.
    std::optional<int> Ask(Probe probe, int value = 0, const std::string &name = "")
    {
        std::string path = folder_.path() + "/" + name, digits;
        for (const unsigned char c : path) {
            constexpr char kDigits[] = "0123456789abcdef";
            const int unit = c == '/' ? '\\' : c;
            digits += {'0', '0', kDigits[unit >> 4], kDigits[unit & 15]};
        }
        const std::optional<std::string> line = e2e::TheSuite().caller->Ask(
            "good - 0 0 " + std::to_string(value) + " " + std::to_string(probe) + " " + digits + " 0 - 0");
        return line && line->starts_with("result ") ? std::optional(std::atoi(line->c_str() + 7)) : std::nullopt;
    }

    e2e::RowFolder folder_{e2e::TheSuite().scratch};
};

struct Question {
    Probe probe;
    int value, answer;
};

TEST_F(ProbeTest, TheSystemAnswersAsADeviceDoes)
{
    const Question rows[] = {
        {kEntryReasons, 0, 0x1},
        {kStackAlignment, 0, 4},
        {kUseStack, 40, kAnyAnswer},
        {kSetError, 77, 0},
        {kGetError, 0, 77},
        {kReallocToNothing, 0, 1},
        {kAcquire, 0, 0},
        {kAcquire, 1, 0},
        {kAcquire, 2, static_cast<int>(0x80090019)}, // no such name
        {kAcquire, 3, static_cast<int>(0x80090014)}, // no such type
        {kAcquire, 4, static_cast<int>(0x80090009)}, // unknown flag
        {kAcquire, 5, static_cast<int>(0x80090016)}, // keys that nobody keeps
        {kRefuseLookAlikes, 0, 1004},
        {kComposeUtf8, 0, 1004},
        {kAskOfUtf8, 0, 87},
        {kByteOf, 0x20AC, 0x80},
        {kByteOf, 0x81, 0x81},  // a byte without a character has the control character
        {kByteOf, 0x3042, '?'}, // HIRAGANA LETTER A
        {kByteOf, 0x0100, 'A'}, // with a macron
        {kByteOf, 0xFF21, 'A'}, // of full width
        {kCharacterOf, 0x80, 0x20AC},
    };
    const OtherRunner runner(ThePrograms().probe, {}, {});
    for (const Question &row : rows) {
        const std::optional<int> answer = Ask(row.probe, row.value);
        ASSERT_TRUE(answer) << row.probe << ": " << e2e::TheSuite().caller->Complaints();
        EXPECT_TRUE(row.answer == kAnyAnswer || *answer == row.answer)
            << row.probe << " " << row.value << ": " << *answer;
    }
    EXPECT_TRUE(e2e::TheSuite().caller->Quit()) << e2e::TheSuite().caller->Complaints();
}

TEST_F(ProbeTest, AJapaneseDeviceHasBytesInPairs)
{
    const Question rows[] = {
        {kByteOf, 0x3042, 0x82A0}, {kByteOf, 0xFF71, 0xB1},        {kByteOf, 0xE9, 'e'},
        {kByteOf, 0x20AC, '?'},    {kCharacterOf, 0x82A0, 0x3042}, {kCharacterOf, 0xB1, 0xFF71},
    };
    const OtherRunner runner(ThePrograms().probe, {}, {"--ansi=932"});
    for (const Question &row : rows) {
        EXPECT_EQ(row.answer, Ask(row.probe, row.value)) << row.probe << " " << row.value;
    }
}

TEST_F(ProbeTest, ThreadsComeAndGoWithErrorsOfTheirOwn)
{
    const OtherRunner runner(ThePrograms().probe, {}, {"--thread=own", "--imports=thumb"});
    EXPECT_EQ(0x12, Ask(kEntryReasons));
    EXPECT_EQ(0x1232, Ask(kEntryReasons));
    EXPECT_EQ(0, Ask(kSetError, 77));
    EXPECT_EQ(0, Ask(kGetError));
    EXPECT_EQ(4, Ask(kStackAlignment));
}

TEST_F(ProbeTest, FilesAreFoundAndKeptAsOnADevice)
{
    struct FileQuestion {
        Probe probe;
        const char *name;
        int answer;
    };
    const std::string tooLong = "shop/" + std::string(250, 'x'); // with the folder's own path
    const FileQuestion rows[] = {
        {kAttributesOf, "shop/LIST.xml", 0x20}, {kAttributesOf, "SHOP/list.XML", 0x20},
        {kAttributesOf, "Shop", 0x10},          {kAttributesOf, "shop/fixed.xml", 0x21},
        {kAttributesOf, "shop/none.xml", -1},   {kCountMatches, "shop/*", 5},
        {kCountMatches, "shop/*.*", 5},                                           // a name without a dot too
        {kCountMatches, "shop/*.x?l", 3},       {kCountMatches, "shop/l[i]*", 1}, // no class of letters
        {kCountMatches, "shop/?", 0},           {kMakeFolder, "shop/new", 0},
        {kMakeFolder, "SHOP/New", 183},         {kMakeFolder, "none/new", 3},
        {kMakeFolder, "shop/a:b", 123},         {kAppendTo, "shop/list.xml", 0},
        {kAppendTo, "shop/fixed.xml", 5},       {kAppendTo, "shop/HELD.xml", 32},
        {kDelete, "shop/fixed.xml", 5},         {kDelete, "shop/held.xml", 32},
        {kDelete, "shop/none.xml", 2},          {kDelete, "shop", 5},
        {kDeleteOpen, "shop/list.xml", 32},     {kDelete, "shop/List.xml", 0},
    };
    const OtherRunner runner(ThePrograms().probe, {}, {});
    e2e::WriteTree(folder_.path(), {{"shop/List.xml", "1"},
                                    {"shop/fixed.xml", "2"},
                                    {"shop/held.xml", "3"},
                                    {"shop/nodot", "4"},
                                    {"shop/l[i]st", "5"}});
    std::filesystem::permissions(folder_.path() + "/shop/fixed.xml", std::filesystem::perms::owner_read);
    ce::Ask("hold " + folder_.path() + "/shop/held.xml");
    for (const FileQuestion &row : rows) {
        EXPECT_EQ(row.answer, Ask(row.probe, 0, row.name)) << row.probe << " " << row.name;
    }
    EXPECT_EQ("ok", ce::Ask("release"));
    EXPECT_EQ(0, Ask(kDelete, 0, "shop/held.xml"));
}

// What ends the program, and what it says then.
TEST_F(ProbeTest, NoDeviceForgives)
{
    struct Crime {
        const char *plugin, *imports;
        Probe probe;
        int value;
        const char *complaint; // none: this device can do it
    };
    const Crime rows[] = {
        {"", "arm", kUseStack, 60, "the stack of 56 KB is used up"},
        {"watch_accesses", "arm", kUseStack, 40, ""},
        {"watch_accesses", "arm", kLoadUnaligned, 0, "an unaligned access"},
        {"only_version_4t", "arm", kLoadUnaligned, 0, ""},
        {"only_version_4t", "arm", kCountZeros, 0, "not in version 4T"},
        {"only_version_4t", "arm", kGetError, 0, ""},
        {"only_version_4t", "thumb", kGetError, 0, "must change to THUMB state"},
        {"", "thumb", kCountZeros, 0, ""},
        {"", "thumb", kGetError, 0, ""},
    };
    for (const Crime &row : rows) {
        SCOPED_TRACE(std::string(row.plugin) + " " + row.imports + " " + std::to_string(row.probe));
        std::vector<std::string> emulator = {"-cpu", "arm926"};
        if (row.plugin[0] != 0) {
            emulator.insert(emulator.end(), {"-plugin", OtherRunner::Plugin(row.plugin)});
        }
        const OtherRunner runner(ThePrograms().probe, emulator, {std::string("--imports=") + row.imports});
        EXPECT_EQ(row.complaint[0] == 0, Ask(row.probe, row.value).has_value());
        EXPECT_NE(std::string::npos, e2e::TheSuite().caller->Complaints().find(row.complaint))
            << e2e::TheSuite().caller->Complaints();
    }
}

} // namespace

} // namespace pavonix::ce
