// How far an examination is, on a terminal.
#pragma once

#include <chrono>
#include <string>

namespace client {

// Overwrites its own line on standard error, from one second after its creation on.
class Steps {
public:
    explicit Steps(bool shown) : shown_(shown) {}
    ~Steps();
    Steps(const Steps &) = delete;
    Steps &operator=(const Steps &) = delete;

    void Begin(const std::string &step);

private:
    const std::chrono::steady_clock::time_point started_ = std::chrono::steady_clock::now();
    bool shown_;
    bool lineIsThere_ = false;
};

} // namespace client
