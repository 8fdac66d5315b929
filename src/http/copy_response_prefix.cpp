#include "http/copy_response_prefix.h"

namespace pavonix {

namespace {

constexpr std::uint8_t kLastSingleByte = 0xA0;
constexpr char kTwoZeros[2] = {0, 0};

} // namespace

void CopyResponsePrefix(const char *source, ZtByteData *target, std::int32_t count)
{
    target->Clear();
    while (source != nullptr && count > 0) {
        if (*source == 0) {
            target->Append(kTwoZeros, 2);
            break;
        }
        const int bytes = static_cast<std::uint8_t>(*source) > kLastSingleByte ? 2 : 1;
        target->Append(source, static_cast<std::uint32_t>(bytes));
        source += bytes;
        count -= bytes;
    }
    target->Append(kTwoZeros, 2);
}

} // namespace pavonix
