// How the program ends.
#pragma once

#include <stdexcept>
#include <string>

namespace client {

enum class ExitCode {
    kDone = 0,            // stored, bought, written, or a profile without problems
    kKept = 1,            // the target file exists and was kept
    kUsage = 2,           // the command line is wrong
    kNoReply = 3,         // no reply from the server
    kRefused = 4,         // a reply with another status than 200
    kNothingWhole = 5,    // status 200, but no whole XML document was stored
    kLocalFailure = 6,    // the library or a file of this machine cannot be used
    kProfileProblems = 7, // the profile has problems
};

inline constexpr const char *kExitCodeHelp = "Exit codes:\n"
                                             "  0  stored, bought, written, or a profile without problems\n"
                                             "  1  the target file exists and was kept\n"
                                             "  2  the command line is wrong\n"
                                             "  3  no reply from the server\n"
                                             "  4  the server answered with another status than 200\n"
                                             "  5  the server answered 200, but no whole XML document was stored\n"
                                             "  6  the library or a file of this machine cannot be used\n"
                                             "  7  the profile has problems\n";

// Ends the program with a message and an exit code.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string &message) : std::runtime_error(message), code_(code) {}

    ExitCode code() const { return code_; }

private:
    ExitCode code_;
};

} // namespace client
