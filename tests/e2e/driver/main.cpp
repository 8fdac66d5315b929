// e2e_tests --caller=COMMAND --library=FILE [--flavour=linux|windows|ce] [--shop=PROGRAM]
//
// Plays the table of scenarios, and the longer tests beside it, through one build
// of the library. COMMAND starts the caller for that build and may hold arguments.
#include "rows/rows.h"
#include "run_scenario.h"
#include "suite.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sstream>

namespace pavonix::e2e {

namespace {

class ScenarioTest : public testing::Test {
public:
    explicit ScenarioTest(const Scenario &row) : row_(row) {}
    void TestBody() override { RunScenario(row_); }

private:
    Scenario row_;
};

// Ends the caller behind the last test; a checked build of it reports leaks then.
class CallerEnvironment : public testing::Environment {
public:
    void TearDown() override
    {
        CallerProcess &caller = *TheSuite().caller;
        EXPECT_TRUE(caller.Quit()) << "the caller ended badly:\n" << caller.Complaints();
    }
};

std::string Option(int count, char **arguments, const std::string &name)
{
    const std::string start = "--" + name + "=";
    for (int i = 1; i < count; ++i) {
        if (std::string(arguments[i]).starts_with(start)) {
            return arguments[i] + start.size();
        }
    }
    return "";
}

std::vector<std::string> Words(const std::string &text)
{
    std::istringstream input(text);
    return {std::istream_iterator<std::string>(input), {}};
}

std::string MakeScratch()
{
    std::string path = std::filesystem::temp_directory_path() / "pavonix-e2e-XXXXXX";
    return mkdtemp(path.data()) != nullptr ? path : "";
}

bool SetUp(int count, char **arguments)
{
    Suite &suite = TheSuite();
    const std::string flavour = Option(count, arguments, "flavour");
    suite.flavour = flavour == "windows" ? Flavour::kWindows : flavour == "ce" ? Flavour::kCe : Flavour::kLinux;
    suite.shopServer = Option(count, arguments, "shop");
    suite.scratch = MakeScratch();
    std::vector<std::string> command = Words(Option(count, arguments, "caller"));
    const std::string library = Option(count, arguments, "library");
    if (command.empty() || library.empty() || suite.scratch.empty()) {
        return false;
    }
    command.push_back(std::filesystem::absolute(library));
    suite.caller = std::make_unique<CallerProcess>(command, suite.scratch + "/caller-errors.txt");
    return true;
}

} // namespace

} // namespace pavonix::e2e

int main(int count, char **arguments)
{
    using namespace pavonix::e2e;
    testing::InitGoogleTest(&count, arguments);
    std::signal(SIGPIPE, SIG_IGN);
    if (!SetUp(count, arguments)) {
        std::cerr << "usage: e2e_tests --caller=COMMAND --library=FILE [--flavour=linux|windows|ce] [--shop=PROGRAM]\n";
        return 2;
    }
    for (const Scenario &row : AllRows()) {
        testing::RegisterTest("Scenario", row.name, nullptr, nullptr, __FILE__, __LINE__,
                              [row]() -> testing::Test * { return new ScenarioTest(row); });
    }
    testing::AddGlobalTestEnvironment(new CallerEnvironment);
    const int result = RUN_ALL_TESTS();
    std::error_code ignored;
    std::filesystem::remove_all(TheSuite().scratch, ignored);
    return result;
}
