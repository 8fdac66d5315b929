// The Windows API as this folder uses it, and the few things in which the device
// and the desktop differ. Included by the .cpp files of this folder only.
#pragma once

#if defined(UNDER_CE)
#include "platform/windows/ce/system.h"
#else
#include "platform/windows/desktop/system.h"
#endif
