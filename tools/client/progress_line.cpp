#include "progress_line.h"

#include <iostream>

namespace client {

ProgressLine::~ProgressLine()
{
    if (shown_) {
        std::cerr << "\r\033[K" << std::flush;
    }
}

void ProgressLine::Show(const std::string &text)
{
    const auto now = std::chrono::steady_clock::now();
    if (enabled_ && now >= next_) {
        std::cerr << "\r\033[K" << text << std::flush;
        shown_ = true;
        next_ = now + std::chrono::milliseconds(200);
    }
}

} // namespace client
