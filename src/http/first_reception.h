// Sizes of the first reception of a reply.
#pragma once

#include <cstdint>

namespace pavonix {

// The reply is read with one receive of this many bytes; what arrives later is
// read with Receive.
constexpr std::uint32_t kFirstReception = 1024;

// The head's length when the first reception has no blank line: the first two bytes
// then count as the head, and all that follows as the body.
constexpr std::uint32_t kHeadLengthWithoutEnd = 2;

} // namespace pavonix
