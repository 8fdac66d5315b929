// A running caller: the program that has the library loaded and makes calls on
// command. It is kept alive from row to row and started anew after it died.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pavonix::e2e {

// True if PAVONIX_NO_TIMEOUT is set: a caller may be stopped in a debugger.
bool WaitsForever();

class CallerProcess {
public:
    // The program is looked up in PATH. Its standard error goes into errorFile.
    CallerProcess(std::vector<std::string> command, std::string errorFile);
    ~CallerProcess();
    CallerProcess(const CallerProcess &) = delete;
    CallerProcess &operator=(const CallerProcess &) = delete;

    // Sends one command and returns the answer's line. Starts the program first
    // when it does not run. Nullopt when it died or stayed silent for too long;
    // it is then gone.
    std::optional<std::string> Ask(const std::string &command,
                                   std::chrono::seconds patience = std::chrono::seconds(60));

    // Ends the program by `quit`; true when it did not run or exited with 0.
    bool Quit();

    // What the program has written to standard error since its start.
    std::string Complaints() const;

private:
    struct Running;

    bool Start();
    bool Write(const std::string &line);
    std::optional<std::string> ReadLine(std::chrono::seconds patience);

    std::vector<std::string> command_;
    std::string errorFile_;
    std::unique_ptr<Running> running_; // null while it does not run
};

} // namespace pavonix::e2e
