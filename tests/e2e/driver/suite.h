// What all tests of one run share: the flavour, the library and its caller.
#pragma once

#include "caller_process.h"
#include "flavour.h"
#include "scenario.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pavonix::e2e {

struct Suite {
    Flavour flavour = Flavour::kLinux;
    std::string scratch; // a folder of this run
    std::unique_ptr<CallerProcess> caller;
};

Suite &TheSuite();

// Runs all tests through the caller that this command starts, in a scratch folder
// of their own. Returns the exit code.
int RunSuite(const std::vector<std::string> &callerCommand);

// One call as the caller makes it.
struct ShopCall {
    Export function = Export::kList;
    std::u16string profile;
    std::vector<int> words; // the request record
    std::u16string target;
    int force = 1;
    std::u16string url;
    int port = 0;
};

struct Answer {
    int result;
    std::string record; // the purchase record's bytes, else empty
};

// Makes the call in the suite's caller. When the caller died, the test fails with
// what it said last, and there is no answer.
std::optional<Answer> MakeCall(const ShopCall &call);

// Has the library unloaded and loaded again.
void ReloadLibrary();

} // namespace pavonix::e2e
