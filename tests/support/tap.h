// A tap on the platform: every contract call and every allocation of the library
// passes through here in the test programs (the linker's --wrap puts us in
// front), to be recorded, failed on demand, or answered from a script.
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

// --- Recording: the contract calls since Reset, as "Name" or "Name(detail)".
const std::vector<std::string> &Calls();
int CountOf(const std::string &name);

// --- Faults. A fallible call is an allocation or a contract call that can fail.
// Makes the nth one (from 1) since now fail; with `everAfter` all later ones too.
void FailNth(int nth, bool everAfter);
// Makes every call of one contract function fail.
void FailAlways(const std::string &name);
void FailNone();
int FallibleCalls();  // seen since FailNth
bool FaultHappened(); // since FailNth

// Runs `run` with its first fallible call failing, then with its second one, and
// so on until it makes no more; then all that with every later call failing too. Stops at
// the first failed expectation.
// `run` may end the faults itself. Returns how many there were.
template <typename Run>
int FailEach(const Run &run)
{
    int faults = 0;
    for (const bool everAfter : {false, true}) {
        bool happened = true;
        for (int nth = 1; happened && !testing::Test::HasFailure(); ++nth) {
            SCOPED_TRACE("fault " + std::to_string(nth) + (everAfter ? " and ever after" : ""));
            FailNth(nth, everAfter);
            run();
            happened = FaultHappened();
            FailNone();
            faults += happened ? 1 : 0;
        }
    }
    return faults;
}

// Has something happen before each call of one contract function.
void Before(const std::string &name, const std::function<void()> &action);

// --- What the library holds, to be compared before and after.
struct OpenHandles {
    int blocks = 0; // allocations
    int sockets = 0;
    int streams = 0;
    int searches = 0;
    int sections = 0; // critical sections
    int providers = 0;
    bool operator==(const OpenHandles &) const = default;
};
OpenHandles Held();
int SectionsEntered();    // how often any critical section has been entered
std::int64_t PeakBytes(); // largest sum of the library's allocations since Reset
// Looks for these bytes in every block that the library frees from now on, and
// answers in how many blocks any of them stood.
void WatchFreedBlocks(const std::vector<std::string> &secrets);
int FreedWithSecrets();

// --- A scripted peer in place of the network.
struct ScriptedPeer {
    std::vector<std::string> replies; // one for each receive; after them the peer has closed
    std::string received;             // what the library sent
    std::size_t next = 0;
    int takes = INT_MAX; // bytes of each send, at most
};
// Sockets answer from the script while `peer` is not null.
void UsePeer(ScriptedPeer *peer);

// --- A scripted clock and scripted random bytes.
struct Clock {
    platform::LocalTime time;
    std::uint32_t ticks;
};
void UseClock(const std::optional<Clock> &clock);
void UseRandom(const std::string &bytes); // what GenerateRandom gives; empty for the real source
// NextRand always gives the 31-bit numbers of a linear congruence that starts at
// the seed (tests/data/make_r250.py has it too).

// --- Values that a call reports.
void LimitWrites(std::uint32_t bytes);           // the most that a write of a stream takes
void GrantWinsockVersion(std::uint16_t version); // 0 for the real one

// Forgets records, faults and scripts, as it also happens before each test.
void Reset();

} // namespace pavonix::tap
