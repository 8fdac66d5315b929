// A running caller: the program that loads the library and makes calls on command. It
// stays alive between rows and is restarted after a crash.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace pavonix::e2e {

// True if PAVONIX_NO_TIMEOUT is set: a caller may be stopped in a debugger.
bool WaitsForever();

class CallerProcess {
public:
    // The program is looked up in PATH. Its standard error is written to errorFile.
    CallerProcess(const std::string &command, std::string errorFile);
    ~CallerProcess();
    CallerProcess(const CallerProcess &) = delete;
    CallerProcess &operator=(const CallerProcess &) = delete;

    // Sends one command and returns the reply's line. Starts the program if it is not
    // running. Returns nullopt, and ends the program, if it crashed or timed out.
    std::optional<std::string> Ask(const std::string &command,
                                   std::chrono::seconds patience = std::chrono::seconds(60));

    // Ends the program with `quit`; returns true if it was not running or exited with 0.
    bool Quit();

    // The program's standard error since its start.
    std::string ErrorOutput() const;

private:
    struct Running;

    bool Start();
    bool Write(const std::string &line);
    std::optional<std::string> ReadLine(std::chrono::seconds patience);

    std::string command_, errorFile_;
    std::unique_ptr<Running> running_; // null while it does not run
};

} // namespace pavonix::e2e
