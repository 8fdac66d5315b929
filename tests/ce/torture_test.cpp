// Failing allocations while the image is loaded, and a failing closesocket. Failures of the
// other calls are tested under the sanitizers.
#include "device_test.h"
#include "driver/scenario.h"

namespace pavonix::ce {

namespace {

// Only the handles: the blocks of the component's log differ between calls.
Counts HeldHandles()
{
    Counts held = Stats();
    held.erase("peak");
    held.erase("heap");
    held.erase("blocks");
    return held;
}

const std::string kGoods = e2e::Announce(3000, e2e::Bytes(3000));

class Torture : public DeviceTest {
protected:
    // Small keys: the number of calls matters, not the arithmetic.
    Torture() : DeviceTest(512) {}
};

// Process-wide objects must be usable even if an allocation failed.
TEST_F(Torture, AnAttach)
{
    StopFaults();
    e2e::ReloadLibrary();
    const Counts calls = ImportCalls();
    ASSERT_LT(0, calls.at("malloc"));
    for (int nth = 1; nth <= calls.at("malloc"); ++nth) {
        SCOPED_TRACE("with allocation " + std::to_string(nth) + " failed");
        ASSERT_TRUE(FailOnce("malloc", nth));
        e2e::ReloadLibrary();
        EXPECT_EQ(1, StopFaults());
        const int download = Call(e2e::Export::kList, kGoods), purchase = Call(e2e::Export::kBuy, kRefusal);
        ASSERT_TRUE(download == 0 || download == 200) << download;
        ASSERT_TRUE(purchase == 0 || purchase == 403) << purchase;
    }
    e2e::ReloadLibrary();
    EXPECT_EQ(200, Call(e2e::Export::kList, kGoods));
}

// A socket whose closesocket failed stays open by design. The runner must report it, or
// the other tests would miss leaks.
TEST_F(Torture, AFailedCloseLeavesSocketAndWinsock)
{
    Counts expected = HeldHandles();
    ++expected["sockets"];
    ++expected["winsock"];
    ASSERT_TRUE(FailOnce("closesocket", 1));
    EXPECT_EQ(200, Call(e2e::Export::kList, kGoods));
    EXPECT_EQ(expected, HeldHandles());
    EXPECT_EQ(200, Call(e2e::Export::kList, kGoods)) << "the call after";
    e2e::CallerProcess &runner = *e2e::TheSuite().caller;
    EXPECT_FALSE(runner.Quit());
    EXPECT_NE(std::string::npos, runner.ErrorOutput().find("sockets=1 winsock=1")) << runner.ErrorOutput();
}

} // namespace

} // namespace pavonix::ce
