#include "doctor/steps.h"

#include <iostream>

namespace client {

Steps::~Steps()
{
    if (lineIsThere_) {
        std::cerr << "\r\033[K" << std::flush;
    }
}

void Steps::Begin(const std::string &step)
{
    if (shown_ && std::chrono::steady_clock::now() - started_ > std::chrono::seconds(1)) {
        std::cerr << "\r\033[K" << step << "..." << std::flush;
        lineIsThere_ = true;
    }
}

} // namespace client
