// The process-wide objects of the library. They are built when it is loaded, in
// the order given here, and destroyed in the opposite order when it is unloaded;
// nothing else in the library has a constructor that runs at load time.
#pragma once

#include "profile/device_profile.h"

namespace pavonix {

class ZtRsa;

DeviceProfile &Profile();
ZtRsa &Rsa();

} // namespace pavonix
