// The commands "profile new" and "profile check".
#pragma once

#include "exit_code.h"

#include <CLI/App.hpp>

namespace client {

// Adds both to the program; a command that runs sets *exitCode.
void AddProfileCommands(CLI::App &app, ExitCode *exitCode);

} // namespace client
