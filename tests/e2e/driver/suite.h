// Shared by all tests of one run: the flavour, the library and its caller.
#pragma once

#include "caller_process.h"
#include "scenario.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pavonix::e2e {

// The build of the library.
enum class Flavour { kLinux, kWindows, kCe };

// The library's path of a file of this machine: `\tmp\x` or, under Wine, `Z:\tmp\x`.
// ASCII paths only.
inline std::u16string LibraryPath(Flavour flavour, const std::string &path)
{
    std::u16string text = flavour == Flavour::kWindows ? u"Z:" : u"";
    for (const char c : path) {
        text += c == '/' ? u'\\' : static_cast<char16_t>(c);
    }
    return text;
}

struct Suite {
    Flavour flavour = Flavour::kLinux;
    std::string scratch; // a folder of this run
    std::unique_ptr<CallerProcess> caller;
};

Suite &TheSuite();

// Runs all tests with the caller that this command starts, in a new scratch folder. Returns
// the exit code.
int RunSuite(const std::string &callerCommand);

// One call, as sent to the caller.
struct ShopCall {
    Export function = Export::kList;
    std::u16string profile;
    std::vector<int> words; // the request record
    std::u16string target;
    int force = 1;
    std::u16string url;
    int port = 0;
};

struct CallResult {
    int result;
    std::string record; // the purchase record's bytes; empty for downloads
};

// Makes the call in the suite's caller. If the caller crashed, the test fails with its last
// output, and nullopt is returned.
std::optional<CallResult> MakeCall(const ShopCall &call);

// Unloads the library and loads it again.
void ReloadLibrary();

// Plays one row with the suite's caller and checks all its expectations.
void RunScenario(const Scenario &row);

} // namespace pavonix::e2e
