// The error number over POSIX.
#include "platform/last_error.h"

#include <cerrno>

namespace pavonix::platform {

std::uint32_t LastSystemError()
{
    return static_cast<std::uint32_t>(errno);
}

} // namespace pavonix::platform
