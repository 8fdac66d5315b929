// Waiting for a socket in limited time.
#pragma once

#include "call/call_record.h"

#include <winsock2.h>

namespace client {

using Deadline = std::optional<CallRecord::Clock::time_point>;

enum class Readiness { kToRead, kToWrite };

// False when the deadline comes first; without one it waits as long as it takes.
[[nodiscard]] bool WaitFor(SOCKET socket, Readiness readiness, const Deadline &deadline);

// Connects a socket that blocks, and leaves it blocking. Answers 0 or a Winsock
// error, WSAETIMEDOUT also when the deadline comes.
[[nodiscard]] int ConnectInTime(SOCKET socket, const sockaddr_in &peer, const Deadline &deadline);

} // namespace client
