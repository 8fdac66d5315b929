// A line on the terminal that shows the progress of something slow.
#pragma once

#include <chrono>
#include <string>

namespace client {

// Overwrites its line on standard error, beginning one second after its construction, and
// erases it in the end.
class ProgressLine {
public:
    explicit ProgressLine(bool enabled) : enabled_(enabled) {}
    ~ProgressLine();
    ProgressLine(const ProgressLine &) = delete;
    ProgressLine &operator=(const ProgressLine &) = delete;

    // Ignored if the line was changed less than 200 ms ago.
    void Show(const std::string &text);

private:
    const bool enabled_;
    bool shown_ = false;
    std::chrono::steady_clock::time_point next_ = std::chrono::steady_clock::now() + std::chrono::seconds(1);
};

} // namespace client
