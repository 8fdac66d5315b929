// The command "rules".
#pragma once

#include "exit_code.h"

namespace client {

// Prints every rule that a finding can name.
ExitCode ListRules();

} // namespace client
