// The command "doctor".
#pragma once

#include "exit_code.h"

#include <optional>
#include <string>
#include <vector>

namespace client {

struct DoctorOptions {
    std::string url; // of a download
    std::optional<int> port;
    int type = 1;          // of the requested page of the catalogue
    std::vector<int> good; // type and id: requested instead of a page; or empty
    std::string profile;   // empty: no purchases
    std::vector<int> buy;  // type and id: the good to buy; or empty
    std::string buyUrl;
    int tries = 10;
    double seconds = 10;
    bool json = false;
    bool quiet = false;
};

// Examines a server and prints the findings. Throws Failure(kUsage) for --buy without
// --profile, kLocalFailure for a profile that cannot be read.
ExitCode ExamineServer(const DoctorOptions &options);

} // namespace client
