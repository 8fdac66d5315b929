#include "profile/process_state.h"

namespace pavonix {

namespace {

DeviceProfile profile;

} // namespace

DeviceProfile &Profile()
{
    return profile;
}

} // namespace pavonix
