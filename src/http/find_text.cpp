#include "http/find_text.h"

#include <cstring>

namespace pavonix {

std::int32_t FindText(const char *haystack, const char *needle, std::int32_t start)
{
    if (haystack == nullptr || needle == nullptr) {
        return kFindNullArgument;
    }
    if (needle[0] == 0) {
        return kFindAbsent;
    }
    const char *found = std::strstr(haystack + start, needle);
    return found == nullptr ? kFindAbsent : static_cast<std::int32_t>(found - haystack);
}

} // namespace pavonix
