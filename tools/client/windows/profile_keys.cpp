#include "profile_keys.h"

namespace client {

const char *const kNoProblems =
    "no problems, the keys make tokens; whether they are a pair, only pavonix for Linux tries";

std::vector<std::string> CheckToken(const std::string &, const std::string &)
{
    return {};
}

} // namespace client
