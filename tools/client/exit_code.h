// The program's exit codes.
#pragma once

#include <stdexcept>
#include <string>

namespace client {

enum class ExitCode {
    kDone = 0,
    kKept = 1,
    kUsage = 2,
    kNoReply = 3,
    kRefused = 4,
    kIncompleteFile = 5,
    kLocalFailure = 6,
    kProfileProblems = 7,
    kServerProblems = 8,
    kTimeOut = 9,
    kUnusableUrl = 10,
    kNoConnection = 11,
    kInterrupted = 130,
};

inline constexpr const char *kExitCodeHelp = "Exit codes:\n"
                                             "  0   stored, bought, written, or no fault found\n"
                                             "  1   the target file exists and was kept\n"
                                             "  2   the command line is wrong\n"
                                             "  3   the server was reached, but sent no usable reply\n"
                                             "  4   the server replied with a status other than 200\n"
                                             "  5   the server replied 200, but no complete XML document was stored\n"
                                             "  6   a local file cannot be read or written\n"
                                             "  7   the profile has problems\n"
                                             "  8   the doctor found errors\n"
                                             "  9   the time-out expired\n"
                                             "  10  the library cannot use the URL\n"
                                             "  11  no connection: host unknown, refused or unreachable\n"
                                             "  130 interrupted\n";

// An error that ends the program with a message and an exit code.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string &message) : std::runtime_error(message), code_(code) {}

    ExitCode code() const { return code_; }

private:
    ExitCode code_;
};

} // namespace client
