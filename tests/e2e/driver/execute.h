#pragma once

#include <string>
#include <unistd.h>
#include <vector>

namespace pavonix::e2e {

// In a child just forked: becomes this program, found on the path. Exit code 127
// when it cannot be started.
[[noreturn]] inline void Execute(const std::vector<std::string> &command)
{
    std::vector<char *> arguments;
    for (const std::string &word : command) {
        arguments.push_back(const_cast<char *>(word.c_str()));
    }
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

} // namespace pavonix::e2e
