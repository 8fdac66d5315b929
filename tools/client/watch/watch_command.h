// The command "watch".
#pragma once

#include "exit_code.h"

#include <string>

namespace client {

struct WatchOptions {
    int port = 0; // to listen on; 0 for any
    std::string address = "0.0.0.0";
    std::string server; // HOST:PORT
    double seconds = 60;
    int exchanges = 0; // 0 for no limit
    bool json = false;
};

// Relays and prints exchanges. Throws Failure for a wrong option, an unknown server, or
// a port that cannot be opened.
ExitCode WatchExchanges(const WatchOptions &options);

} // namespace client
