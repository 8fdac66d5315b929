// Random bytes for the padding of RSA blocks, from the one generator of the process.
#pragma once

#include "rsa/text/data_buffer.h"

#include <cstdint>

namespace pavonix {

// Append exactly `count` bytes; of RandomNonZeroBytes none is 0. False when there
// was no memory: the output is then empty. The caller holds the component's lock.
[[nodiscard]] bool RandomBytes(std::uint32_t count, DataBuffer *output);
[[nodiscard]] bool RandomNonZeroBytes(std::uint32_t count, DataBuffer *output);

} // namespace pavonix
