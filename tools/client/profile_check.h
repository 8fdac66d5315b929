// The command "profile check".
#pragma once

#include "exit_code.h"

#include <string>

namespace client {

// Prints the values of a profile, and the problems in it. Throws Failure(kLocalFailure)
// if the file cannot be read.
ExitCode CheckProfile(const std::string &path);

} // namespace client
