#include "http/header_value.h"

#include "http/find_text.h"
#include "rsa/text/allocate.h"

#include <cstring>

namespace pavonix {

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

} // namespace pavonix
