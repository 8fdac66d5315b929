// The instructions of a token on the device. The count does not depend on the machine's load.
#include "device_test.h"

#include <cstdlib>
#include <iostream>

namespace pavonix::ce {

namespace {

class WatchedCost : public DeviceTest {
protected:
    // Returns the instructions of this many purchases inside the DLL. The port refuses the
    // connection, so a purchase is little more than its token.
    long InstructionsOf(int purchases)
    {
        const std::string log = e2e::TheSuite().scratch + "/instructions.txt";
        {
            const OtherRunner counting(ThePrograms().dll,
                                       OtherRunner::Plugin("count_instructions") + " -d plugin -D " + log);
            for (int i = 0; i < purchases; ++i) {
                EXPECT_EQ(0, Call(e2e::Export::kBuy, 1));
            }
            EXPECT_TRUE(e2e::TheSuite().caller->Quit());
        }
        const std::string text = e2e::ReadFile(log);
        return std::atol(text.substr(text.find(' ') + 1).c_str());
    }
};

TEST_F(WatchedCost, OfAToken)
{
    const long one = InstructionsOf(1), three = InstructionsOf(3);
    const long token = (three - one) / 2;
    std::cout << "instructions of a 1024-bit token: " << token << std::endl;
    EXPECT_GT(token, 1'000'000);
    EXPECT_LE(token, 8'300'000);
}

} // namespace

} // namespace pavonix::ce
