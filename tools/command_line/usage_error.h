// Reports mistakes in a command line. Include it only where a program declares its
// options: CLI11 takes seconds to compile.
#pragma once

#include "diagnostics/printable.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace command_line {

inline constexpr int kUsageError = 2; // exit code

// The Levenshtein distance: insertions, deletions and substitutions.
inline std::size_t Distance(const std::string &one, const std::string &other)
{
    std::vector<std::size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (std::size_t i = 0; i < one.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < other.size(); ++j) {
            const std::size_t substituted = diagonal + (one[i] == other[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({substituted, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

// Returns "; did you mean X?" if one of the known words is similar enough.
inline std::string DidYouMean(const std::string &word, const std::vector<std::string> &known)
{
    const auto nearest = std::min_element(known.begin(), known.end(), [&](const auto &a, const auto &b) {
        return Distance(word, a) < Distance(word, b);
    });
    const bool similar =
        nearest != known.end() && Distance(word, *nearest) <= std::max<std::size_t>(2, word.size() / 3);
    return similar ? "; did you mean " + *nearest + "?" : "";
}

// word: one that the parser left over.
inline std::string DescribeUnknown(const CLI::App &app, const std::string &word)
{
    std::vector<std::string> options;
    std::vector<std::string> commands;
    const CLI::App *parsed = &app;
    while (parsed != nullptr) { // the program, its command, and the command's command
        for (const CLI::Option *option : parsed->get_options()) {
            for (const std::string &name : option->get_lnames()) {
                options.push_back("--" + name);
            }
        }
        commands.clear();
        for (const CLI::App *command : parsed->get_subcommands(nullptr)) {
            commands.push_back(command->get_name());
        }
        parsed = parsed->get_subcommands().empty() ? nullptr : parsed->get_subcommands().front();
    }
    const std::string shown = diagnostics::PrintableText(word.substr(0, word.find('=')));
    if (word.starts_with('-')) {
        return "unknown option " + shown + DidYouMean(shown, options);
    }
    return (commands.empty() ? "unexpected argument " : "unknown command ") + shown + DidYouMean(shown, commands);
}

// Prints the help, the version, or what is wrong with the command line. Returns the
// program's exit code.
inline int Explain(const CLI::App &app, const CLI::ParseError &error)
{
    const std::vector<std::string> unknown = app.remaining(true);
    if (error.get_exit_code() == 0 || unknown.empty()) {
        return app.exit(error) == 0 ? 0 : kUsageError;
    }
    // an unknown word causes most errors, whichever one the parser reports
    std::cerr << app.get_name() << ": " << DescribeUnknown(app, unknown.front()) << "\nRun \"" << app.get_name()
              << " --help\" for usage.\n";
    return kUsageError;
}

} // namespace command_line
