// Handles Ctrl-C.
#pragma once

#include "stored_file.h"

namespace client {

// For a download: while it exists, SIGINT and SIGTERM end the program with exit code 128
// plus the signal's number, after a message if an incomplete file is left.
class Interruption {
public:
    explicit Interruption(const StoredFile &target);
    ~Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;
};

// For a series of steps: while it exists, the first SIGINT sets a flag, so that the
// results so far can be printed. The second one ends the program.
class StopRequest {
public:
    StopRequest();
    ~StopRequest();
    StopRequest(const StopRequest &) = delete;
    StopRequest &operator=(const StopRequest &) = delete;

    static bool IsMade();
};

} // namespace client
