// pavonix: calls the client library from the command line.
#include "command_words.h"
#include "doctor/doctor_command.h"
#include "downloads.h"
#include "exit_code.h"
#include "new_profile.h"
#include "profile_commands.h"
#include "purchases.h"
#include "settings.h"
#include "system.h"
#include "watch/watch_command.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>

namespace {

using client::ExitCode;
using client::Failure;

std::string SettingsHelp()
{
    return "Settings: the options --url, --port, --profile and --timeout are also taken from the\n"
           "environment (PAVONIX_URL and so on) and from lines \"profile = FILE\" in the file that\n"
           "PAVONIX_CONFIG names, or " +
           client::SettingsFolder() + "/pavonix.conf.\n\n";
}

ExitCode Run(std::vector<std::string> words)
{
    CLI::App app("Calls a goods shop through the client library and explains the result.", "pavonix");
    app.allow_windows_style_options(false); // a path may begin with a slash
    app.footer(SettingsHelp() + client::kExitCodeHelp);
    app.set_version_flag("--version", "pavonix " CLIENT_VERSION);
    app.require_subcommand(1);
    ExitCode exitCode = ExitCode::kDone;
    client::AddDownloadCommands(app, &exitCode);
    client::AddBuyCommand(app, &exitCode);
    client::AddDoctorCommand(app, &exitCode);
    client::AddWatchCommand(app, &exitCode);
    client::AddNewProfileCommand(*client::AddProfileCommands(app, &exitCode), &exitCode);
    if (const std::string unknown = client::UnknownWord(&app, words); !unknown.empty()) {
        throw Failure(ExitCode::kUsage, unknown + "\nRun \"pavonix --help\" for usage.");
    }
    client::ReadSettings();
    try {
        std::reverse(words.begin(), words.end()); // as the parser takes them
        app.parse(std::move(words));
    } catch (const CLI::RequiredError &error) {
        const std::string missing = client::MissingOptions(app);
        throw Failure(ExitCode::kUsage, missing.empty() ? error.what() : missing);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? ExitCode::kDone : ExitCode::kUsage;
    }
    return exitCode;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return static_cast<int>(Run(client::CommandLine(argc, argv)));
    } catch (const Failure &failure) {
        std::cerr << "pavonix: " << failure.what() << '\n';
        return static_cast<int>(failure.code());
    } catch (const std::exception &failure) {
        std::cerr << "pavonix: " << failure.what() << '\n';
        return static_cast<int>(ExitCode::kLocalFailure);
    }
}
