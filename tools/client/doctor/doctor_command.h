// The command "doctor".
#pragma once

#include "exit_code.h"

#include <CLI/App.hpp>

namespace client {

// Adds it to the program; when it runs it sets *exitCode.
void AddDoctorCommand(CLI::App &app, ExitCode *exitCode);

} // namespace client
