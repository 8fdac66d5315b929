// Each call that the DLL makes to the system, failed once: the documented result,
// nothing left behind, and the next call works.
#include "device_test.h"
#include "driver/scenario.h"

#include <iostream>

namespace pavonix::ce {

namespace {

Counts Held()
{
    Counts held = Stats();
    held.erase("peak");
    return held;
}

// The handles alone: the blocks of the component's log differ from call to call.
Counts HeldHandles()
{
    Counts held = Held();
    held.erase("heap");
    held.erase("blocks");
    return held;
}

// Of an import called very often only some calls are failed, evenly spread.
constexpr int kMostFaults = 300;

const std::string kGoods = e2e::Announce(3000, e2e::Bytes(3000));

class Torture : public DeviceTest {
protected:
    // Small keys: what counts is the number of calls, not the arithmetic.
    Torture() : DeviceTest(512) {}

    // `result` is what an undisturbed call answers.
    void FailEach(e2e::Export function, const std::string &reply, int result)
    {
        e2e::ReloadLibrary();
        const Counts attached = Held();
        Calm();
        ASSERT_EQ(result, Call(function, reply));
        Counts calls = ImportCalls();
        calls.erase("closesocket"); // has a test of its own
        int faults = 0;
        for (const auto &[name, count] : calls) {
            const int step = 1 + count / kMostFaults;
            for (int nth = 1; nth <= count && FailOnce(name, nth); nth += step) {
                SCOPED_TRACE("with call " + std::to_string(nth) + " of " + name + " failed");
                FailOne(function, reply, result);
                faults += Calm();
                e2e::ReloadLibrary();
                EXPECT_EQ(attached, Held()) << "left behind";
                if (HasFailure()) {
                    return;
                }
            }
        }
        std::cout << faults << " faults" << std::endl;
        EXPECT_GT(faults, 100);
    }

private:
    void FailOne(e2e::Export function, const std::string &reply, int result)
    {
        const Counts handles = HeldHandles();
        const int found = Call(function, reply);
        ASSERT_TRUE(found == 0 || found == result) << "result " << found;
        ASSERT_EQ(handles, HeldHandles());
        ASSERT_EQ(result, Call(function, reply)) << "the call after";
        if (function != e2e::Export::kBuy) {
            ASSERT_EQ(e2e::Bytes(3000), e2e::ReadFile(Target()));
        }
    }
};

TEST_F(Torture, ADownload)
{
    FailEach(e2e::Export::kList, kGoods, 200);
}

TEST_F(Torture, APurchase)
{
    FailEach(e2e::Export::kBuy, kRefusal, 403);
}

// Process-wide objects that got no memory must be usable all the same.
TEST_F(Torture, AnAttach)
{
    Calm();
    e2e::ReloadLibrary();
    const Counts calls = ImportCalls();
    ASSERT_LT(0, calls.at("malloc"));
    for (int nth = 1; nth <= calls.at("malloc"); ++nth) {
        SCOPED_TRACE("with allocation " + std::to_string(nth) + " failed");
        ASSERT_TRUE(FailOnce("malloc", nth));
        e2e::ReloadLibrary();
        EXPECT_EQ(1, Calm());
        const int download = Call(e2e::Export::kList, kGoods), purchase = Call(e2e::Export::kBuy, kRefusal);
        ASSERT_TRUE(download == 0 || download == 200) << download;
        ASSERT_TRUE(purchase == 0 || purchase == 403) << purchase;
    }
    e2e::ReloadLibrary();
    EXPECT_EQ(200, Call(e2e::Export::kList, kGoods));
}

// What a failed closesocket leaves open stays so by design; and the runner must
// tell it, or the other tests would see no leak either.
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
    EXPECT_NE(std::string::npos, runner.Complaints().find("sockets=1 winsock=1")) << runner.Complaints();
}

} // namespace

} // namespace pavonix::ce
