// Ctrl-C during a download.
#pragma once

#include "stored_file.h"

namespace client {

// While it lives, SIGINT and SIGTERM end the program with 128 and the signal's
// number, and it says so when they leave half a file.
class Interruption {
public:
    explicit Interruption(const StoredFile &target);
    ~Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;
};

} // namespace client
