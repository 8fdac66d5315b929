#include "profile/process_state.h"

#include "rsa/cipher/zt_rsa.h"

namespace pavonix {

namespace {

DeviceProfile profile;
ZtRsa rsa;

} // namespace

DeviceProfile &Profile()
{
    return profile;
}

ZtRsa &Rsa()
{
    return rsa;
}

} // namespace pavonix
