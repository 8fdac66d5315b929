// Random calls, the same on every flavour, compared with the model of a call. With
// PAVONIX_SEED=123 only the call of that seed is made.
#include "driver/suite.h"
#include "model/drawn_call.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace pavonix::e2e {

namespace {

// The call and the server's reply, for a failure's message.
std::string Described(const Scenario &call)
{
    std::string text = "address \"" + std::string(call.url.begin(), call.url.end()) + "\", force " +
                       std::to_string(call.force) + ", profile " +
                       testing::PrintToString(call.profile.value_or("none"));
    for (const std::string &piece : call.pieces) {
        text += "\npiece " + testing::PrintToString(piece);
    }
    return text;
}

TEST(DrawnCalls, AgreeWithTheModel)
{
    RunScenario(PlainPurchase());
    const char *const chosen = std::getenv("PAVONIX_SEED");
    const unsigned first = chosen == nullptr ? 1 : static_cast<unsigned>(std::atoi(chosen));
    const unsigned last = chosen == nullptr ? 300 : first;
    int stored = 0, refused = 0, sent = 0;
    for (unsigned seed = first; seed <= last && !HasFailure(); ++seed) {
        SCOPED_TRACE("drawn with PAVONIX_SEED=" + std::to_string(seed));
        std::mt19937 random(seed);
        std::string bytes(400, '\0');
        for (char &byte : bytes) {
            byte = static_cast<char>(random());
        }
        Choices choices(bytes);
        const Scenario call = DrawCall("drawn", &choices);
        SCOPED_TRACE(Described(call));
        RunScenario(call);
        sent += call.request.has_value();
        stored += call.after != call.before;
        refused += call.record.errorCode.has_value();
    }
    if (chosen != nullptr || HasFailure()) {
        return; // the counts are meaningless then
    }
    EXPECT_TRUE(sent > 100 && stored > 15 && refused > 15) << sent << " " << stored << " " << refused;
}

} // namespace

} // namespace pavonix::e2e
