// The runner itself: behaviour that is peculiar to devices, and errors that end the program
// as they would on a device.
#include "device_test.h"
#include "probe/probes.h"
#include "support/hex.h"

#include <filesystem>
#include <span>

namespace pavonix::ce {

namespace {

class System : public testing::Test {
protected:
    struct Row {
        std::string call, reply; // of the command "system"
    };

    void ExpectReplies(const std::vector<Row> &rows)
    {
        for (const Row &row : rows) {
            EXPECT_EQ("system " + row.reply, Ask("system " + row.call)) << row.call;
        }
    }

    // A text as an argument.
    static std::string Wide(const std::u16string &text)
    {
        return "=" + test::ToHex({reinterpret_cast<const char *>(text.c_str()), 2 * text.size() + 2});
    }

    // A name in the folder, as the path that the device has for it.
    std::string Path(const std::string &name) const
    {
        return Wide(e2e::LibraryPath(e2e::Flavour::kCe, folder_.path() + "/" + name));
    }

    // An action of an image, and the message with which the program ends.
    struct Action {
        const char *imports;
        Probe probe;
        int value;
        const char *message; // empty: allowed on this device
    };

    static void ExpectMessages(std::span<const Action> rows, const std::string &emulatorOptions)
    {
        for (const Action &row : rows) {
            SCOPED_TRACE(std::string(row.imports) + " " + std::to_string(row.probe));
            const OtherRunner runner(ThePrograms().probe, emulatorOptions, std::string("--imports=") + row.imports);
            EXPECT_EQ(row.message[0] == 0, AskProbe(row.probe, row.value).has_value());
            EXPECT_NE(std::string::npos, e2e::TheSuite().caller->ErrorOutput().find(row.message))
                << e2e::TheSuite().caller->ErrorOutput();
        }
    }

    // Returns the probe's result; nullopt if the runner ended.
    static std::optional<int> AskProbe(Probe probe, int value = 0)
    {
        const std::optional<std::string> line = e2e::TheSuite().caller->Ask("good - 0 0 " + std::to_string(value) +
                                                                            " " + std::to_string(probe) + " - 0 - 0");
        return line && line->starts_with("result ") ? std::optional(std::atoi(line->c_str() + 7)) : std::nullopt;
    }

    e2e::RowFolder folder_{e2e::TheSuite().scratch};
};

TEST_F(System, ConversionsAreThoseOfADevice)
{
    ExpectReplies({
        {"WideCharToMultiByte 0 0 =ac20 1 ?2 2 0 0", "1 0 8000"},                // EURO SIGN
        {"WideCharToMultiByte 0 0 =8100 1 ?2 2 0 0", "1 0 8100"},                // a byte without a character
        {"WideCharToMultiByte 0 0 =4230 1 ?2 2 0 ?4", "1 0 3f00 01000000"},      // HIRAGANA LETTER A
        {"WideCharToMultiByte 0 0 =0001 1 ?2 2 0 ?4", "1 0 4100 00000000"},      // A with a macron
        {"WideCharToMultiByte 0 0x400 =4100 1 ?2 2 0 0", "0 1004 0000"},         // no look-alikes: a flag of desktops
        {"WideCharToMultiByte 65001 0x200 =4100 1 ?2 2 0 0", "0 1004 0000"},     // no flags to UTF-8
        {"WideCharToMultiByte 65001 0 =4100 1 ?2 2 0 ?4", "0 87 0000 00000000"}, // nor questions
        {"MultiByteToWideChar 0 0 =80 1 ?2 1", "1 0 ac20"},
        {"MultiByteToWideChar 0 0x10 =80 1 ?2 1", "0 1004 0000"},
        {"MultiByteToWideChar 65001 1 =41 1 ?2 1", "0 1004 0000"},
    });
    const OtherRunner japanese(ThePrograms().dll, "", "--ansi=932");
    ExpectReplies({
        {"WideCharToMultiByte 0 0 =4230 1 ?2 2 0 0", "2 0 82a0"},
        {"WideCharToMultiByte 0 0 =71ff 1 ?2 2 0 0", "1 0 b100"},           // of half width
        {"WideCharToMultiByte 0 0 =e900 1 ?2 2 0 ?4", "1 0 6500 00000000"}, // e with an acute
        {"WideCharToMultiByte 0 0 =ac20 1 ?2 2 0 ?4", "1 0 3f00 01000000"},
        {"MultiByteToWideChar 0 0 =82a0b1 3 ?4 2", "2 0 423071ff"},
    });
}

TEST_F(System, ProvidersAndBlocksAreThoseOfADevice)
{
    const std::string base = "CryptAcquireContextW ?4 0 " + Wide(u"Microsoft Base Cryptographic Provider v1.0");
    ExpectReplies({
        {"CryptAcquireContextW ?4 0 " + Wide(u"Microsoft Base Provider") + " 1 0xF0000000", "0 2148073497 00000000"},
        {base + " 2 0xF0000000", "0 2148073492 00000000"}, // no such type
        {base + " 1 0xF0000001", "0 2148073481 00000000"}, // no such flag
        {base + " 1 8", "0 2148073494 00000000"},          // stored keys are unsupported
        {"CryptReleaseContext 1 1", "0 2148073481"},
    });
    const std::string block = std::to_string(std::stoi(Ask("system malloc 8").substr(7)));
    ExpectReplies({{"realloc " + block + " 0", "0 0"}});
}

TEST_F(System, FilesAreFoundAndKeptAsOnADevice)
{
    e2e::WriteTree(folder_.path(), {{"shop/List.xml", "1"},
                                    {"shop/fixed.xml", "2"},
                                    {"shop/held.xml", "3"},
                                    {"shop/nodot", "4"},
                                    {"shop/l[i]st", "5"}});
    std::filesystem::permissions(folder_.path() + "/shop/fixed.xml", std::filesystem::perms::owner_read);
    ASSERT_EQ("ok", Ask("hold " + folder_.path() + "/shop/held.xml"));
    const std::string append = " " + Wide(u"ab");
    ExpectReplies({
        {"CreateDirectoryW " + Path("shop/new") + " 0", "1 0"},
        {"CreateDirectoryW " + Path("SHOP/New") + " 0", "0 183"},
        {"CreateDirectoryW " + Path("none/new") + " 0", "0 3"},
        {"CreateDirectoryW " + Path("shop/a:b") + " 0", "0 123"},
        {"CreateDirectoryW " + Path("shop/" + std::string(250, 'x')) + " 0", "0 123"}, // longer than any path
        {"_wfopen " + Path("shop/fixed.xml") + append, "0 5"},
        {"_wfopen " + Path("shop/HELD.xml") + append, "0 32"},
        {"DeleteFileW " + Path("shop/fixed.xml"), "0 5"},
        {"DeleteFileW " + Path("shop/held.xml"), "0 32"},
        {"DeleteFileW " + Path("shop/none.xml"), "0 2"},
        {"DeleteFileW " + Path("shop"), "0 5"},
        {"CreateDirectoryW " + Path("shop/a*b") + " 0", "0 123"},
        {"_wfopen " + Path("q?r.txt") + append, "0 123"},
        {"CreateDirectoryW " + Path("shop/../out") + " 0", "0 123"},
        {"CreateDirectoryW " + Wide(u"shop") + " 0", "0 123"}, // there is no current folder
        {"CreateDirectoryW " + Path("shop/new. ") + " 0", "0 183"},
    });
    const std::string stream =
        std::to_string(std::stoi(Ask("system _wfopen " + Path("SHOP/list.xml") + append).substr(7)));
    ExpectReplies({
        {"_wfopen " + Path("shop/List.xml") + append, "0 32"},
        {"DeleteFileW " + Path("shop/List.xml"), "0 32"},
        {"fclose " + stream, "0 0"},
        {"DeleteFileW " + Path("shop/LIST.xml"), "1 0"},
    });
    EXPECT_EQ("ok", Ask("release"));
    ExpectReplies({{"DeleteFileW " + Path("shop/held.xml"), "1 0"}});
}

TEST_F(System, WinsockGrantsAtMostVersion2Point2)
{
    const OtherRunner runner(ThePrograms().dll);
    EXPECT_EQ(0u, Ask("system WSAStartup 0x0707 ?400").find("system 0 0 02020202"));
    EXPECT_EQ(0u, Ask("system WSAStartup 0x0101 ?400").find("system 0 0 01010202"));
    EXPECT_EQ(0u, Ask("system WSAStartup 0x0100 ?400").find("system 10092 0 "));
}

TEST_F(System, SearchesFollowTheDevicesRules)
{
    e2e::WriteTree(folder_.path(), {{"shop/List.xml", ""}, {"shop/fixed.xml", ""}, {"nodot", ""}, {"l[i]st", ""}});
    std::filesystem::permissions(folder_.path() + "/shop/fixed.xml", std::filesystem::perms::owner_read);
    struct Search {
        const char *name;
        int count, attributes;
    };
    const Search rows[] = {
        {"SHOP/list.XML", 1, 0x20}, {"Shop", 1, 0x10},  {"shop/fixed.xml", 1, 0x21},
        {"shop/none.xml", 0, 0},    {"shop/*", 2, -1},  {"*.*", 3, -1},
        {"shop/*.x?l", 2, -1},      {"l[i]*", 1, 0x20}, {"shop/[fl]*", 0, 0},
        {"shop/[ist.*", 0, 0},      {"shop/?", 0, 0},
    };
    for (const Search &row : rows) {
        SCOPED_TRACE(row.name);
        std::istringstream first(Ask("system FindFirstFileW " + Path(row.name) + " ?560"));
        std::string word, search, error, record;
        first >> word >> search >> error >> record;
        EXPECT_EQ(row.count == 0, search == "-1");
        EXPECT_TRUE(row.attributes == -1 || row.attributes == std::stoi(record.substr(0, 2), nullptr, 16)) << record;
        for (int i = 1; i < row.count; ++i) {
            EXPECT_TRUE(Ask("system FindNextFileW " + search + " ?560").starts_with("system 1 0 "));
        }
        if (row.count != 0) {
            EXPECT_TRUE(Ask("system FindNextFileW " + search + " ?560").starts_with("system 0 18 "));
            ExpectReplies({{"FindClose " + search, "1 0"}});
        }
    }
}

TEST_F(System, ThreadsHaveTheirOwnErrors)
{
    const std::string missing = "DeleteFileW " + Path("none.xml");
    ExpectReplies({{missing, "0 2"}});
    const OtherRunner runner(ThePrograms().probe, "", "--thread=own --imports=thumb");
    ExpectReplies({{missing, "0 0"}}); // another thread asks for the error
    const std::optional<int> reasons = AskProbe(kEntryReasons);
    ASSERT_TRUE(reasons) << e2e::TheSuite().caller->ErrorOutput();
    EXPECT_EQ(0x32, *reasons & 0xFF);
    EXPECT_EQ(4, AskProbe(kStackAlignment));
    EXPECT_NE(0x1234, AskProbe(kReadBelowStack, 0x1234));
    EXPECT_FALSE(AskProbe(kStartInEntry)); // as the thread ends
    EXPECT_NE(std::string::npos, e2e::TheSuite().caller->ErrorOutput().find("called from an image's entry"));
}

// Calls that end the program. `$` is the result of the first one.
TEST_F(System, InvalidCallsEndTheProgram)
{
    struct Row {
        const char *message;
        std::vector<std::string> calls;
    };
    const Row rows[] = {
        {"written after it was freed", {"malloc 8", "free $", "memset $ 0 1", "stats"}},
        {"a block used after free", {"malloc 8", "free $", "free $"}},
        {"memcpy of bytes that overlap", {"malloc 16", "memcpy $4 $ 8"}},
        {"deleted while it is owned",
         {"malloc 20", "InitializeCriticalSection $", "EnterCriticalSection $", "DeleteCriticalSection $"}},
    };
    for (const Row &row : rows) {
        const OtherRunner runner(ThePrograms().dll);
        std::optional<std::string> answer;
        int first = 0;
        for (std::string call : row.calls) {
            for (std::size_t place; (place = call.find('$')) != std::string::npos;) {
                const int offset = call[place + 1] == '4' ? 4 : 0;
                call.replace(place, offset == 0 ? 1 : 2, std::to_string(first + offset));
            }
            answer = e2e::TheSuite().caller->Ask(call == "stats" ? call : "system " + call);
            first = first != 0 || !answer ? first : std::stoi(answer->substr(7));
        }
        EXPECT_FALSE(answer) << row.message;
        EXPECT_NE(std::string::npos, e2e::TheSuite().caller->ErrorOutput().find(row.message))
            << e2e::TheSuite().caller->ErrorOutput();
    }
}

TEST_F(System, InvalidActionsEndTheProgram)
{
    const Action rows[] = {
        {"arm", kUseStack, 60, "the stack of 56 KB is used up"},
        {"arm", kCallDeep, 50, ""},
        {"arm", kCallDeep, 53, "a system call with less than 4 KB of the stack left"},
        {"arm", kChangeRegister, 0, "a function changed a register of r4 to r11"},
        {"thumb", kChangeRegister, 0, "a function changed a register of r4 to r11"},
        {"thumb", kCountZeros, 0, ""},
        {"thumb", kCallSystem, 0, ""},
    };
    ExpectMessages(rows, "-cpu arm926");
}

class WatchedSystem : public System {};

TEST_F(WatchedSystem, InvalidActionsEndTheProgram)
{
    const Action rows[] = {
        {"arm", kUseStack, 40, ""},
        {"arm", kLoadUnaligned, 0, "an unaligned access"},
        {"arm", kLoadHalfUnaligned, 0, "an unaligned access"},
        {"arm", kCountZeros, 0, "not in version 4T"},
        {"arm", kCallKernel, 0, "a coprocessor or a kernel is called"},
        {"arm", kAddFloats, 0, "a coprocessor or a kernel is called"},
        {"arm", kCallSystem, 0, ""},
        {"thumb", kCallSystem, 0, "must change to THUMB state"},
    };
    ExpectMessages(rows, "-cpu arm926 " + OtherRunner::Plugin("watch_image"));
}

} // namespace

} // namespace pavonix::ce
