// Connecting in limited time.
#pragma once

#include "wire/segments.h"

#include <netinet/in.h>

namespace client {

// Connects a socket that blocks, and leaves it blocking. Answers 0 or an errno,
// ETIMEDOUT also when the deadline comes; null is no deadline.
[[nodiscard]] int ConnectInTime(int socket, const sockaddr_in &peer, const Deadline *deadline);

} // namespace client
