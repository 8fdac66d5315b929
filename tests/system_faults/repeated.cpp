// Many calls and loads in one process, and calls interrupted by signals.
#include "system_faults/shop_calls.h"
#include "support/times.h"

#include <csignal>
#include <functional>
#include <iostream>
#include <iterator>
#include <malloc.h>
#include <ctime>

namespace pavonix {

namespace {

struct Held {
    long heap, resident, descriptors; // bytes, bytes, count

    Held() : heap(static_cast<long>(mallinfo2().uordblks)), resident(0), descriptors(0)
    {
        std::ifstream("/proc/self/statm") >> resident >> resident; // in pages
        resident *= sysconf(_SC_PAGESIZE);
        for (const auto &each : std::filesystem::directory_iterator("/proc/self/fd")) {
            descriptors += each.is_symlink();
        }
    }
};

class Repeated : public ShopCalls {
protected:
    void CallEach()
    {
        ASSERT_EQ(List(700, target), 200);
        ASSERT_EQ(Good(5000, target), 200);
        ASSERT_EQ(Buy(), 200);
        ASSERT_EQ(box.Read("target"), std::string(5000, 'x'));
    }

    // The first hundredth of the rounds creates the lasting state; the others must not add to it.
    static void ExpectNoGrowth(int rounds, const std::function<void()> &round)
    {
        const auto repeat = [&](int times) {
            for (int i = 0; i < times && !HasFailure(); ++i) {
                round();
            }
            return Held();
        };
        const Held first = repeat(rounds / 100), last = repeat(rounds - rounds / 100);
        std::cout << rounds << " rounds: heap " << first.heap << " to " << last.heap << " bytes, resident "
                  << first.resident << " to " << last.resident << " bytes, descriptors " << first.descriptors << " to "
                  << last.descriptors << std::endl;
        EXPECT_NEAR(last.heap, first.heap, 64 << 10); // the allocator's cache of small blocks
        EXPECT_LE(last.resident, first.resident + (1 << 20));
        EXPECT_NEAR(last.descriptors, first.descriptors, 1); // the shop's end of the last connection
    }
};

TEST_F(Repeated, CallsDoNotLeak)
{
    ExpectNoGrowth(test::Times(3000), [this] { CallEach(); });
}

TEST_F(Repeated, LoadsDoNotLeak)
{
    ExpectNoGrowth(test::Times(1000), [this] {
        CallEach();
        dlclose(library);
        ASSERT_EQ(dlopen(LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "is not unloaded";
        library = dlopen(LIBRARY, RTLD_NOW | RTLD_LOCAL);
    });
}

TEST_F(Repeated, CallsContinueAfterSignals)
{
    server.Pause(std::chrono::milliseconds(1)); // so that most signals interrupt a waiting call
    static volatile std::sig_atomic_t signals = 0;
    struct sigaction counting = {}, before;
    counting.sa_handler = [](int) { signals = signals + 1; }; // without SA_RESTART: calls end with EINTR
    sigaction(SIGUSR1, &counting, &before);
    sigevent toThisThread = {};
    toThisThread.sigev_notify = SIGEV_THREAD_ID;
    toThisThread.sigev_signo = SIGUSR1;
    toThisThread._sigev_un._tid = gettid();
    const itimerspec often = {{0, 200'000}, {0, 200'000}};
    timer_t timer;
    ASSERT_EQ(timer_create(CLOCK_MONOTONIC, &toThisThread, &timer) + timer_settime(timer, 0, &often, nullptr), 0);
    for (int i = 0; i < 100 && !HasFailure(); ++i) {
        CallEach();
    }
    timer_delete(timer);
    sigaction(SIGUSR1, &before, nullptr);
    EXPECT_GT(signals, 300);
}

} // namespace

} // namespace pavonix
