// pavonix: calls the client library from the command line.
#include "downloads.h"
#include "profile_commands.h"
#include "purchases.h"

#include <CLI/CLI.hpp>

#include <iostream>

int main(int argc, char **argv)
{
    using client::ExitCode;

    CLI::App app("Asks a goods shop through the client library and explains the answer.");
    app.footer(client::kExitCodeHelp);
    app.require_subcommand(1);
    ExitCode exitCode = ExitCode::kDone;
    client::AddDownloadCommands(app, &exitCode);
    client::AddBuyCommand(app, &exitCode);
    client::AddProfileCommands(app, &exitCode);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? 0 : static_cast<int>(ExitCode::kUsage);
    } catch (const client::Failure &failure) {
        std::cerr << "pavonix: " << failure.what() << '\n';
        return static_cast<int>(failure.code());
    } catch (const std::exception &failure) {
        std::cerr << "pavonix: " << failure.what() << '\n';
        return static_cast<int>(ExitCode::kLocalFailure);
    }
    return static_cast<int>(exitCode);
}
