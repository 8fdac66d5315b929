#include "command_words.h"

#include "diagnostics/printable.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace client {

namespace {

// How many letters must be put in, taken out or changed.
std::size_t Distance(const std::string &one, const std::string &other)
{
    std::vector<std::size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (std::size_t i = 0; i < one.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < other.size(); ++j) {
            const std::size_t changed = diagonal + (one[i] == other[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

std::string Suggest(const std::string &word, const std::vector<std::string> &known)
{
    const auto nearest = std::min_element(known.begin(), known.end(), [&](const auto &a, const auto &b) {
        return Distance(word, a) < Distance(word, b);
    });
    const bool alike = nearest != known.end() && Distance(word, *nearest) <= std::max<std::size_t>(2, word.size() / 3);
    return alike ? "; did you mean " + *nearest + "?" : "";
}

std::string NoSuchCommand(CLI::App *app, const std::string &word)
{
    std::vector<std::string> known;
    for (const CLI::App *command : app->get_subcommands(nullptr)) {
        known.push_back(command->get_name());
    }
    return "unknown command \"" + diagnostics::PrintableText(word) + "\"" + Suggest(word, known);
}

std::string NoSuchOption(CLI::App *app, const std::string &word)
{
    std::vector<std::string> known;
    for (const CLI::Option *option : app->get_options()) {
        for (const std::string &name : option->get_lnames()) {
            known.push_back("--" + name);
        }
    }
    return app->get_name() + " has no option " + diagnostics::PrintableText(word) + Suggest(word, known);
}

} // namespace

std::string UnknownWord(CLI::App *app, const std::vector<std::string> &words)
{
    for (std::size_t i = 0; i < words.size() && words[i] != "--"; ++i) {
        if (words[i].starts_with("--")) {
            const std::string name = words[i].substr(0, words[i].find('='));
            const CLI::Option *option = app->get_option_no_throw(name);
            if (option == nullptr) {
                return NoSuchOption(app, name);
            }
            i += option->get_items_expected_max() > 0 && name == words[i] ? 1 : 0; // skip its value
        } else if (!words[i].starts_with("-") && !app->get_subcommands(nullptr).empty()) {
            const std::vector<CLI::App *> commands = app->get_subcommands(nullptr);
            const auto command = std::find_if(commands.begin(), commands.end(),
                                              [&](const CLI::App *each) { return each->get_name() == words[i]; });
            if (command == commands.end()) {
                return NoSuchCommand(app, words[i]);
            }
            app = *command;
        }
    }
    return {};
}

std::string MissingOptions(const CLI::App &program)
{
    const CLI::App *command = &program;
    while (!command->get_subcommands().empty()) {
        command = command->get_subcommands().front();
    }
    std::string missing;
    for (const CLI::Option *option : command->get_options()) {
        if (option->get_required() && option->count() == 0) {
            missing += (missing.empty() ? "" : ", ") + option->get_name();
        }
    }
    return missing.empty() ? "" : command->get_name() + " needs " + missing;
}

} // namespace client
