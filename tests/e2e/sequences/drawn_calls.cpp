// Calls by chance, the same on every flavour, against the model of a call.
#include "driver/run_scenario.h"
#include "model/drawn_call.h"

#include <gtest/gtest.h>

#include <random>

namespace pavonix::e2e {

namespace {

TEST(DrawnCalls, AgreeWithTheModel)
{
    RunScenario(PlainPurchase());
    int stored = 0, refused = 0, sent = 0;
    for (unsigned seed = 1; seed <= 300 && !HasFailure(); ++seed) {
        SCOPED_TRACE("drawn by seed " + std::to_string(seed));
        std::mt19937 random(seed);
        std::string bytes(400, '\0');
        for (char &byte : bytes) {
            byte = static_cast<char>(random());
        }
        Choices choices(bytes);
        const Scenario call = DrawCall("drawn", &choices);
        RunScenario(call);
        sent += call.request.has_value();
        stored += call.after != call.before;
        refused += call.record.errorCode.has_value();
    }
    EXPECT_TRUE(sent > 100 && stored > 15 && refused > 15) << sent << " " << stored << " " << refused;
}

} // namespace

} // namespace pavonix::e2e
