#include "http/copy_response_prefix.h"

namespace pavonix {

namespace {

constexpr std::uint8_t kLastSingleByte = 0xA0;
constexpr char kTwoZeros[2] = {0, 0};

} // namespace

void CopyResponsePrefix(const char *source, ZtByteData *target, std::int32_t count)
{
    target->Clear();
    std::uint32_t taken = 0;
    while (source != nullptr && count > 0 && source[taken] != 0) {
        const int bytes = static_cast<std::uint8_t>(source[taken]) > kLastSingleByte ? 2 : 1;
        taken += static_cast<std::uint32_t>(bytes);
        count -= bytes;
    }
    target->Append(source, taken);
    if (source != nullptr && count > 0) {
        target->Append(kTwoZeros, 2);
    }
    target->Append(kTwoZeros, 2);
}

} // namespace pavonix
