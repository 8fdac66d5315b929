// There is no OpenSSL here, and the library's engine cannot stand in one program with
// the compiler's run-time library.
#include "profile_keys.h"

namespace client {

const char *const kNoProblems = "no problems in the text; whether the keys are a pair, only pavonix for Linux tries";

std::vector<std::string> CheckKeys(const std::string &, const std::string &)
{
    return {};
}

} // namespace client
