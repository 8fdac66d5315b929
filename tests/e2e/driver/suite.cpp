#include "suite.h"

#include "support/hex.h"
#include "tree.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <sstream>

namespace pavonix::e2e {

namespace {

// Ends the caller after the last test; it then reports resources that the library leaked.
class CallerEnvironment : public testing::Environment {
public:
    void TearDown() override
    {
        CallerProcess &caller = *TheSuite().caller;
        EXPECT_TRUE(caller.Quit()) << "the caller failed:\n" << caller.ErrorOutput();
    }
};

std::string Hex(const std::u16string &text)
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string hex;
    for (const char16_t unit : text) {
        for (int shift = 12; shift >= 0; shift -= 4) {
            hex += kDigits[unit >> shift & 15];
        }
    }
    return text.empty() ? "\"\"" : hex;
}

std::string Command(const ShopCall &call)
{
    constexpr const char *kNames[] = {"list ", "good ", "buy "};
    std::ostringstream line;
    line << kNames[static_cast<int>(call.function)] << Hex(call.profile);
    for (const int word : call.words) {
        line << ' ' << word;
    }
    if (call.function != Export::kBuy) { // a purchase has its force in the request record
        line << ' ' << Hex(call.target) << ' ' << call.force;
    }
    line << ' ' << Hex(call.url) << ' ' << call.port;
    return line.str();
}

} // namespace

int RunSuite(const std::string &callerCommand)
{
    std::signal(SIGPIPE, SIG_IGN);
    const RowFolder scratch(std::filesystem::temp_directory_path());
    TheSuite().scratch = scratch.path();
    TheSuite().caller = std::make_unique<CallerProcess>(callerCommand, scratch.path() + "/caller-errors.txt");
    testing::AddGlobalTestEnvironment(new CallerEnvironment);
    return RUN_ALL_TESTS();
}

Suite &TheSuite()
{
    static Suite suite;
    return suite;
}

std::optional<CallResult> MakeCall(const ShopCall &call)
{
    CallerProcess &caller = *TheSuite().caller;
    const std::optional<std::string> line = caller.Ask(Command(call));
    std::istringstream words(line.value_or(""));
    std::string kind, record;
    int result = 0;
    words >> kind >> result >> record;
    if (kind != "result") {
        ADD_FAILURE() << "no result from the caller: " << line.value_or("it crashed or timed out") << "\n"
                      << caller.ErrorOutput();
        return std::nullopt;
    }
    return CallResult{result, test::FromHex(record)};
}

void ReloadLibrary()
{
    CallerProcess &caller = *TheSuite().caller;
    EXPECT_EQ(caller.Ask("reload"), "ready") << caller.ErrorOutput();
}

} // namespace pavonix::e2e
