// Which rule a failed look-up or a failed connection breaks.
#pragma once

#include "judgement/rule.h"

#include <string>

namespace client {

// error: that of a look-up for IPv4 addresses. Asks for others, too, when
// the system does not tell "no such name" from "no such address".
[[nodiscard]] const judgement::Rule &NameRule(const std::string &host, int error);

// error: that of a connect.
[[nodiscard]] const judgement::Rule &ConnectRule(int error);

} // namespace client
