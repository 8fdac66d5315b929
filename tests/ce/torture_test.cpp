// Each call that the DLL makes to the system, failed once: the documented result,
// nothing left behind, and the next call works.
#include "answering_server.h"
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

// The handles alone: which blocks the process-wide objects hold may differ behind a failed call.
Counts HeldHandles()
{
    Counts held = Held();
    held.erase("heap");
    held.erase("blocks");
    return held;
}

class Torture : public DeviceTest {
protected:
    // Small keys: what counts is the number of calls, not the arithmetic.
    Torture() : DeviceTest(512) {}

    // `result` is what an undisturbed call answers.
    void FailEach(e2e::Export function, const AnsweringServer &server, int result)
    {
        Calm();
        ASSERT_EQ(result, Call(function, server.port()));
        Counts calls = ImportCalls();
        calls.erase("closesocket"); // has a test of its own
        int faults = 0;
        for (const auto &[name, count] : calls) {
            for (int nth = 1; nth <= count && FailOnce(name, nth); ++nth) {
                SCOPED_TRACE("with call " + std::to_string(nth) + " of " + name + " failed");
                FailOne(function, server, result);
                faults += Calm();
                if (HasFatalFailure()) {
                    return;
                }
            }
        }
        std::cout << faults << " faults" << std::endl;
        EXPECT_GT(faults, 50);
    }

private:
    void FailOne(e2e::Export function, const AnsweringServer &server, int result)
    {
        const Counts before = Held(), handles = HeldHandles();
        const int found = Call(function, server.port());
        ASSERT_TRUE(found == 0 || found == result) << "result " << found;
        ASSERT_EQ(handles, HeldHandles());
        ASSERT_EQ(result, Call(function, server.port())) << "the call after";
        ASSERT_EQ(before, Held());
        if (function != e2e::Export::kBuy) {
            ASSERT_EQ(e2e::Bytes(3000), e2e::ReadFile(Target()));
        }
    }
};

TEST_F(Torture, ADownload)
{
    FailEach(e2e::Export::kList, AnsweringServer(e2e::Announce(3000, e2e::Bytes(3000))), 200);
}

// What a failed closesocket leaves open stays so by design; and the runner must
// tell it, or the other tests would see no leak either.
TEST_F(Torture, AFailedCloseLeavesSocketAndWinsock)
{
    const AnsweringServer shop(e2e::Announce(3000, e2e::Bytes(3000)));
    Counts expected = Held();
    ++expected["sockets"];
    ++expected["winsock"];
    ASSERT_TRUE(FailOnce("closesocket", 1));
    EXPECT_EQ(200, Call(e2e::Export::kList, shop.port()));
    EXPECT_EQ(expected, Held());
    EXPECT_EQ(200, Call(e2e::Export::kList, shop.port())) << "the call after";
    e2e::CallerProcess &runner = *e2e::TheSuite().caller;
    EXPECT_FALSE(runner.Quit());
    EXPECT_NE(std::string::npos, runner.Complaints().find("sockets=1 winsock=1")) << runner.Complaints();
}

} // namespace

} // namespace pavonix::ce
