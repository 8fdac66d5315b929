// Logs a size in bytes.
#pragma once

#include "rsa/log/log_base.h"

#include <cstdint>

namespace pavonix {

inline void LogSize(LogBase &log, const char *tag, std::uint32_t size)
{
    log.logDataLong(tag, static_cast<std::int32_t>(size));
}

} // namespace pavonix
