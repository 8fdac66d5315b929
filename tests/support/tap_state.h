// What the parts of the tap share.
#pragma once

#include "support/tap.h"

#include <atomic>

namespace pavonix::tap {

// Notes a contract call, and returns whether it must fail.
bool Enter(const char *name, const std::string &detail = {});
// Notes an allocation of the library, and returns whether it must fail.
bool EnterAllocation();

struct State {
    OpenHandles held;
    std::int64_t bytes = 0;
    std::int64_t peakBytes = 0;
    std::vector<std::string> secrets;
    int freedWithSecrets = 0;
    std::atomic<int> sectionsEntered = 0;
    ScriptedPeer *peer = nullptr;
    std::optional<Clock> clock;
    std::string random;
    std::uint32_t rand = 0;
    std::uint16_t winsockVersion = 0;
    std::uint32_t writeLimit = UINT32_MAX;
};
State &TheState();

} // namespace pavonix::tap
