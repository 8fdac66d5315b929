#include "profile_keys.h"

namespace client {

const char *const kNoProblems = "no problems; only pavonix for Linux checks whether the keys are a pair";

std::vector<std::string> CheckToken(const std::string &, const std::string &)
{
    return {};
}

} // namespace client
