// Maps errors of look-ups and connections to rules.
#pragma once

#include "diagnostics/rule.h"

#include <string>

namespace client {

// error: of a look-up for an IPv4 address. May look up other addresses, because some
// systems do not distinguish "no such name" from "no such address".
[[nodiscard]] const diagnostics::Rule &NameRule(const std::string &host, int error);

// The error of this thread's last look-up, and the one for a time-out.
[[nodiscard]] int LastLookUpError();
extern const int kLookUpTimeOut;

// error: of a connect.
[[nodiscard]] const diagnostics::Rule &ConnectRule(int error);

} // namespace client
