// A word of the command line that does not exist is named, with the nearest one
// that does.
#pragma once

#include <CLI/App.hpp>

#include <string>
#include <vector>

namespace client {

// Answers what is wrong with the words; empty when each command and each option
// exists.
[[nodiscard]] std::string UnknownWord(CLI::App *app, const std::vector<std::string> &words);

} // namespace client
