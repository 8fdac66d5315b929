// Ctrl-C.
#pragma once

#include "stored_file.h"

namespace client {

// For a download: while it lives, SIGINT and SIGTERM end the program with 128 and
// the signal's number, and it says so when they leave an incomplete file.
class Interruption {
public:
    explicit Interruption(const StoredFile &target);
    ~Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;
};

// For a series of steps: while it lives, the first SIGINT is only noted, so that what
// was found so far can be shown. The second ends the program.
class StopRequest {
public:
    StopRequest();
    ~StopRequest();
    StopRequest(const StopRequest &) = delete;
    StopRequest &operator=(const StopRequest &) = delete;

    static bool IsMade();
};

} // namespace client
