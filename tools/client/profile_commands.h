// The command "profile check".
#pragma once

#include "exit_code.h"

#include <CLI/App.hpp>

namespace client {

// Adds "profile" with "check" to the program, and returns "profile"; a command that
// runs sets *exitCode.
CLI::App *AddProfileCommands(CLI::App &app, ExitCode *exitCode);

} // namespace client
