// The error number over Windows; Winsock's is the same one.
#include "platform/last_error.h"

#include "platform/windows/system.h"

namespace pavonix::platform {

std::uint32_t LastSystemError()
{
    return GetLastError();
}

} // namespace pavonix::platform
