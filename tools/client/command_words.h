// Mistakes in the command line.
#pragma once

#include <CLI/App.hpp>

#include <string>
#include <vector>

namespace client {

// The first unknown command or option, with the nearest one that exists; empty if
// all exist.
[[nodiscard]] std::string UnknownWord(CLI::App *app, const std::vector<std::string> &words);

// All required options that the parsed command lacks; empty for none.
[[nodiscard]] std::string MissingOptions(const CLI::App &program);

} // namespace client
