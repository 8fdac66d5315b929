#include "http/reply_text.h"

#include "http/find_text.h"
#include "rsa/text/allocate.h"
#include "rsa/text/fixed_text.h"

#include <cstring>

namespace pavonix {

namespace {

constexpr std::uint8_t kLastSingleByte = 0xA0;
constexpr char kTwoZeros[2] = {0, 0};

// Neither zero nor the lead byte of a two-byte character.
bool IsSingleByte(char c)
{
    return static_cast<std::uint8_t>(c - 1) < kLastSingleByte;
}

} // namespace

char *GetHeaderValue(const char *head, const char *name)
{
    const std::int32_t found = FindText(head, name, 0);
    if (found < 0) {
        return nullptr;
    }
    const std::int32_t colon = FindText(head, ":", found);
    const std::int32_t lineEnd = FindText(head, "\r\n", found);
    if (colon < 0 || lineEnd <= colon) {
        return nullptr;
    }
    const std::size_t length = static_cast<std::size_t>(lineEnd - colon - 1);
    char *value = AllocateArray<char>(length + 1);
    if (value != nullptr) {
        std::memcpy(value, head + colon + 1, length);
        value[length] = 0;
    }
    return value;
}

std::int32_t ParseStatus(std::string_view head)
{
    constexpr std::string_view kLineEnds = "\r\n";
    head = head.substr(0, head.find('\0'));
    while (!head.empty() && kLineEnds.find(head.front()) != kLineEnds.npos) {
        head.remove_prefix(1);
    }
    const std::size_t end = head.find_first_of(" \r\n");
    if (end == head.npos || head[end] != ' ') {
        return 0; // a space in a later line is not the status line's
    }
    const std::string_view digits = head.substr(end + 1, 3);
    FixedText<4> status;
    status.AppendN(digits.data(), digits.size());
    return ParseDecimal(status.c_str());
}

void CopyResponsePrefix(const char *source, ZtByteData *target, std::int32_t count)
{
    target->Clear(); // when memory runs out it stays empty, and no call looks at it
    const char *const end = source + (source == nullptr ? 0 : count);
    const char *next = source;
    while (true) {
        while (next < end && IsSingleByte(*next)) {
            ++next;
        }
        if (next >= end || *next == 0) {
            break;
        }
        next += 2; // a lead byte and its trail byte
    }
    (void)target->Append(source, static_cast<std::uint32_t>(next - source));
    if (next < end) {
        (void)target->Append(kTwoZeros, 2);
    }
    (void)target->Append(kTwoZeros, 2);
}

} // namespace pavonix
