// e2e_tests --caller=COMMAND --library=FILE [--flavour=linux|windows|ce] [--only=rows]
//
// Plays the table of scenarios, and the longer tests beside it, through one build
// of the library. COMMAND starts the caller for that build and may hold arguments.
#include "rows/rows.h"
#include "run_scenario.h"
#include "suite.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <sstream>

namespace pavonix::e2e {

namespace {

class ScenarioTest : public testing::Test {
public:
    explicit ScenarioTest(const Scenario &row) : row_(row) {}
    void TestBody() override
    {
        const std::source_location &place = row_.name.place;
        const testing::ScopedTrace trace(place.file_name(), static_cast<int>(place.line()), "the row");
        RunScenario(row_);
    }

private:
    Scenario row_;
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

// How to start the caller with its library; empty when an option is missing.
std::vector<std::string> ReadOptions(int count, char **arguments)
{
    Suite &suite = TheSuite();
    const std::string flavour = Option(count, arguments, "flavour");
    suite.flavour = flavour == "windows" ? Flavour::kWindows : flavour == "ce" ? Flavour::kCe : Flavour::kLinux;
    std::vector<std::string> command = Words(Option(count, arguments, "caller"));
    const std::string library = Option(count, arguments, "library");
    if (command.empty() || library.empty()) {
        return {};
    }
    command.push_back(std::filesystem::absolute(library));
    return command;
}

} // namespace

} // namespace pavonix::e2e

int main(int count, char **arguments)
{
    using namespace pavonix::e2e;
    testing::InitGoogleTest(&count, arguments);
    const std::vector<std::string> command = ReadOptions(count, arguments);
    if (command.empty()) {
        std::cerr << "usage: e2e_tests --caller=COMMAND --library=FILE [--flavour=linux|windows|ce] "
                     "[--only=rows]\n";
        return 2;
    }
    if (Option(count, arguments, "only") == "rows" && GTEST_FLAG_GET(filter) == "*") {
        GTEST_FLAG_SET(filter, "Scenario.*");
    }
    for (const Scenario &row : AllRows()) {
        const RowName &name = row.name;
        testing::RegisterTest("Scenario", name.text, nullptr, nullptr, name.place.file_name(),
                              static_cast<int>(name.place.line()),
                              [row]() -> testing::Test * { return new ScenarioTest(row); });
    }
    return RunSuite(command);
}
