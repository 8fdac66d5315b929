// The few places of a call that know more than the platform does report it to the
// tracing build, in plain values. A macro, so that to the compiler of the ordinary
// build they do not exist: its code is the same, byte for byte, without these lines.
#pragma once

#include <cstdint>

namespace pavonix::trace {

struct ProfileFacts {
    std::int32_t userId;
    std::int32_t serialLength; // in characters, as the others
    std::int32_t userAgentLength;
    std::int32_t publicKeyLength;
    std::int32_t privateKeyLength;
};
void WriteProfile(const ProfileFacts &profile);

// log: the engine's log of its last operation.
void WriteEngineLog(const char *log);

// start: the first reception, as far as the library keeps it. The lengths are those
// that the library has read from it.
void WriteReply(const char *start, std::uint32_t headLength, std::uint32_t contentLength);

} // namespace pavonix::trace

#if defined(PAVONIX_TRACE)
#define PAVONIX_TRACE_HOOK(call) trace::call
#else
#define PAVONIX_TRACE_HOOK(call) static_cast<void>(0)
#endif
