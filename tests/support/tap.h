// The linker's --wrap routes every platform call and every allocation of the library
// through the tap, which records it, fails it on demand, or returns scripted results.
#pragma once

#include "platform/clock.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace pavonix::tap {

// --- Recording: the platform calls since Reset, as "Name" or "Name(detail)".
const std::vector<std::string> &Calls();
int CountOf(const std::string &name);

// --- Faults. A fallible call is an allocation or a platform call that can fail.
// Fails the nth fallible call from now (from 1); with `everAfter` all later ones too.
void FailNth(int nth, bool everAfter);
// Fails every call of one platform function.
void FailAlways(const std::string &name);
void FailNone();
bool FaultHappened(); // since FailNth

// Calls `run` with its first fallible call failing, then with the second, until no
// fault happens any more; then once more with every later call failing too. Stops at the
// first failed expectation. `run` may call FailNone. Returns the number of faults.
template <typename Run>
int FailEach(const Run &run)
{
    int faults = 0;
    for (const bool everAfter : {false, true}) {
        bool happened = true;
        for (int nth = 1; happened && !testing::Test::HasFailure(); ++nth) {
            SCOPED_TRACE("fault " + std::to_string(nth) + (everAfter ? " and every later one" : ""));
            FailNth(nth, everAfter);
            run();
            happened = FaultHappened();
            FailNone();
            faults += happened ? 1 : 0;
        }
    }
    return faults;
}

// Calls `action` before each call of one platform function.
void Before(const std::string &name, const std::function<void()> &action);

// --- Resources that the library holds, to be compared before and after.
struct OpenHandles {
    int blocks = 0; // allocations
    int sockets = 0;
    int streams = 0;
    int searches = 0;
    int sections = 0; // critical sections
    int providers = 0;
    bool operator==(const OpenHandles &) const = default;
};

// --- Scripts in place of the network, the clock and the random source.
struct ScriptedPeer {
    std::vector<std::string> replies; // one per receive; then the peer closes
    std::string received;             // all bytes that the library sent
    std::size_t next = 0;
    int takes = INT_MAX; // bytes accepted by each send, at most
};

struct Clock {
    platform::LocalTime time;
    std::uint32_t ticks;
};

struct State {
    OpenHandles held;
    std::int64_t bytes = 0, peakBytes = 0; // allocated by the library; the peak since Reset
    std::vector<std::string> secrets = {}; // searched for in each block that the library frees
    int freedWithSecrets = 0;              // blocks that held one of them
    ScriptedPeer *peer = nullptr;
    std::optional<Clock> clock = {};
    std::string random = {};          // the bytes that GenerateRandom returns; empty for the real source
    std::uint32_t rand = 0;           // NextRand is a linear congruence from the seed, as in tests/data/make_r250.py
    std::uint16_t winsockVersion = 0; // that StartWinsock grants; 0 for the real one
    std::uint32_t writeLimit = UINT32_MAX; // bytes that each write of a stream accepts, at most
};
State &TheState();

inline OpenHandles Held()
{
    return TheState().held;
}
// Sockets are scripted while `peer` is not null.
inline void UsePeer(ScriptedPeer *peer)
{
    TheState().peer = peer;
}
inline void UseClock(const std::optional<Clock> &clock)
{
    TheState().clock = clock;
}

// Clears the recording, the faults and the scripts; also called before each test.
void Reset();

// --- For the tap itself: each records a call and returns whether it must fail.
bool Enter(const char *name, const std::string &detail = {});
bool EnterAllocation();

} // namespace pavonix::tap
