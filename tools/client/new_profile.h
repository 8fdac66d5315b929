// The command "profile new".
#pragma once

#include "exit_code.h"

#include <string>

namespace client {

struct NewProfile {
    std::string file;
    std::string publicKeyFile; // if empty, the profile's name with ".pub.xml" appended
    std::string userAgent = "Pavonix/1.0";
    std::string serial;
    int userId = 0;
    int userNumber = 0;
    int bits = 1024;
    bool force = false;

    // Generates a key pair and writes the profile, readable by its owner only, and the
    // public key for the shop. Throws Failure: kUsage for values that a profile cannot
    // hold, kLocalFailure for a file that exists (without force) or cannot be written.
    ExitCode Write() const;

private:
    void CheckReadsBack(const std::string &text) const;
};

} // namespace client
