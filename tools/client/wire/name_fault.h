// Which rule a failed look-up or a failed connection breaks.
#pragma once

#include "diagnostics/rule.h"

#include <string>

namespace client {

// error: that of a look-up for IPv4 addresses. Asks for others, too, when
// the system does not tell "no such name" from "no such address".
[[nodiscard]] const diagnostics::Rule &NameRule(const std::string &host, int error);

// error: that of a connect.
[[nodiscard]] const diagnostics::Rule &ConnectRule(int error);

} // namespace client
