// Which rule a failed look-up or a failed connection breaks.
#pragma once

#include "diagnostics/rule.h"

#include <string>

namespace client {

// error: that of a look-up for IPv4 addresses. Asks for others, too, when
// the system does not tell "no such name" from "no such address".
[[nodiscard]] const diagnostics::Rule &NameRule(const std::string &host, int error);

// Why this thread's last look-up failed, and the reason for one that took too long.
[[nodiscard]] int LastLookUpError();
extern const int kLookUpTimeOut;

// error: that of a connect.
[[nodiscard]] const diagnostics::Rule &ConnectRule(int error);

} // namespace client
