// e2e_tests --caller=COMMAND --library=FILE [--flavour=linux|windows|ce]
//
// Runs the table of scenarios and the longer tests with one build of the library. COMMAND
// starts the caller for that build and may contain arguments.
#include "rows/rows.h"
#include "suite.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>

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

} // namespace

} // namespace pavonix::e2e

int main(int count, char **arguments)
{
    using namespace pavonix::e2e;
    testing::InitGoogleTest(&count, arguments);
    const std::string caller = Option(count, arguments, "caller"), library = Option(count, arguments, "library"),
                      flavour = Option(count, arguments, "flavour");
    if (caller.empty() || library.empty()) {
        std::cerr << "usage: e2e_tests --caller=COMMAND --library=FILE [--flavour=linux|windows|ce]\n";
        return 2;
    }
    for (const Scenario &row : AllRows()) {
        const RowName &name = row.name;
        testing::RegisterTest("Scenario", name.text, nullptr, nullptr, name.place.file_name(),
                              static_cast<int>(name.place.line()),
                              [row]() -> testing::Test * { return new ScenarioTest(row); });
    }
    TheSuite().flavour = flavour == "windows" ? Flavour::kWindows : flavour == "ce" ? Flavour::kCe : Flavour::kLinux;
    return RunSuite(caller + " " + std::filesystem::absolute(library).string());
}
