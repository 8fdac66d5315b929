#include "rsa/random/random_bytes.h"

#include "rsa/random/r250.h"

namespace pavonix {

bool RandomBytes(std::uint32_t count, DataBuffer *output)
{
    return SharedR250().AppendBytes(count, output);
}

bool RandomNonZeroBytes(std::uint32_t count, DataBuffer *output)
{
    return SharedR250().AppendNonZeroBytes(count, output);
}

} // namespace pavonix
