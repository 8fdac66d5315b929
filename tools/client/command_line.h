// The program's commands and options. Only its .cpp file includes CLI11, which takes
// seconds to compile.
#pragma once

#include "exit_code.h"

#include <string>
#include <vector>

namespace client {

// words: the command line in UTF-8, without the program's name. Runs the command that
// they name. Throws Failure.
[[nodiscard]] ExitCode RunCommandLine(std::vector<std::string> words);

} // namespace client
