// The command "watch".
#pragma once

#include "exit_code.h"

#include <CLI/App.hpp>

namespace client {

// Adds it to the program; when it runs it sets *exitCode.
void AddWatchCommand(CLI::App &app, ExitCode *exitCode);

} // namespace client
