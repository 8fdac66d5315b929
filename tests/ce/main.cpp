// ce_tests EMULATOR RUNNER DLL PLUGIN: what is tested on the device's image alone,
// beside the scenarios that every flavour runs.
#include "device_test.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace {

using namespace pavonix;

// Ends the runner behind the last test; it tells then what the DLL left behind.
class RunnerEnvironment : public testing::Environment {
public:
    void TearDown() override
    {
        e2e::CallerProcess &runner = *e2e::TheSuite().caller;
        EXPECT_TRUE(runner.Quit()) << "the runner ended badly:\n" << runner.Complaints();
    }
};

} // namespace

int main(int count, char **arguments)
{
    testing::InitGoogleTest(&count, arguments);
    std::signal(SIGPIPE, SIG_IGN);
    std::string scratch = std::filesystem::temp_directory_path() / "pavonix-ce-XXXXXX";
    if (count != 5 || mkdtemp(scratch.data()) == nullptr) {
        std::cerr << "usage: ce_tests EMULATOR RUNNER DLL PLUGIN\n";
        return 2;
    }
    ce::TheRunner() = {arguments[1], arguments[2], arguments[3], arguments[4]};
    e2e::Suite &suite = e2e::TheSuite();
    suite.flavour = e2e::Flavour::kCe;
    suite.scratch = scratch;
    suite.caller = std::make_unique<e2e::CallerProcess>(
        std::vector<std::string>{arguments[1], arguments[2], arguments[3]}, scratch + "/runner-errors.txt");
    testing::AddGlobalTestEnvironment(new RunnerEnvironment);
    const int result = RUN_ALL_TESTS();
    std::filesystem::remove_all(scratch);
    return result;
}
