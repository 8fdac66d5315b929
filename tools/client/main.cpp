// pavonix: calls the client library from the command line.
#include "command_line.h"
#include "system.h"

#include <iostream>

int main(int argc, char **argv)
{
    using client::ExitCode;
    try {
        return static_cast<int>(client::RunCommandLine(client::CommandLine(argc, argv)));
    } catch (const client::Failure &failure) {
        std::cerr << "pavonix: " << failure.what() << '\n';
        return static_cast<int>(failure.code());
    } catch (const std::exception &failure) {
        std::cerr << "pavonix: " << failure.what() << '\n';
        return static_cast<int>(ExitCode::kLocalFailure);
    }
}
