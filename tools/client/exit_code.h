// How the program ends.
#pragma once

#include <stdexcept>
#include <string>

namespace client {

enum class ExitCode {
    kDone = 0,            // stored, bought, written, or no fault found
    kKept = 1,            // the target file exists and was kept
    kUsage = 2,           // the command line is wrong
    kNoReply = 3,         // connected, but no usable reply
    kRefused = 4,         // a reply with another status than 200
    kNothingWhole = 5,    // status 200, but no complete XML document was stored
    kLocalFailure = 6,    // the library or a file of this machine cannot be used
    kProfileProblems = 7, // the profile has problems
    kServerProblems = 8,  // doctor found errors
    kTimeOut = 9,         // --timeout ran out
    kUnusableUrl = 10,    // the library cannot use the URL
    kNoConnection = 11,   // host unknown, refused or unreachable
    kInterrupted = 130,   // Ctrl-C
};

inline constexpr const char *kExitCodeHelp = "Exit codes:\n"
                                             "  0   stored, bought, written, or no fault found\n"
                                             "  1   the target file exists and was kept\n"
                                             "  2   the command line is wrong\n"
                                             "  3   the server was reached, but sent no usable reply\n"
                                             "  4   the server replied with another status than 200\n"
                                             "  5   the server replied 200, but no complete XML document was stored\n"
                                             "  6   the library or a file of this machine cannot be used\n"
                                             "  7   the profile has problems\n"
                                             "  8   doctor found errors\n"
                                             "  9   the time given with --timeout ran out\n"
                                             "  10  the library cannot use the URL\n"
                                             "  11  no connection: the host is unknown, refuses or cannot be reached\n"
                                             "  130 interrupted\n";

// Ends the program with a message and an exit code.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string &message) : std::runtime_error(message), code_(code) {}

    ExitCode code() const { return code_; }

private:
    ExitCode code_;
};

} // namespace client
