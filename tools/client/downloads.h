// The commands "list" and "good".
#pragma once

#include "exit_code.h"

#include <CLI/App.hpp>

namespace client {

// Adds both to the program; a command that runs sets *exitCode.
void AddDownloadCommands(CLI::App &app, ExitCode *exitCode);

} // namespace client
