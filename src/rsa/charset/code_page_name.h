// The charset names of code pages.
#pragma once

#include <cstdint>

namespace pavonix {

// The name by which the Internet knows a Windows code page, such as "iso-8859-1"
// for 28591; null for a number without a name.
const char *CodePageName(std::int32_t codePage);

} // namespace pavonix
