// What the tests on the device's image share: calls into it through the runner,
// and the runner's own commands.
#pragma once

#include "driver/suite.h"
#include "driver/tree.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace pavonix::ce {

// How to start the runner; more options and the DLL follow.
struct RunnerCommand {
    std::string emulator, runner, dll, countingPlugin;
};
RunnerCommand &TheRunner();

using Counts = std::map<std::string, int>;

// "heap", "peak", "sockets" and so on, as the runner tells them; the peak starts anew.
Counts Stats();
// The imports called since the last Calm, by name.
Counts ImportCalls();
// No faults from now on; answers how many there were since the last Calm.
int Calm();
// Has the nth call from now of an import fail; false for one that cannot.
bool FailOnce(const std::string &name, int nth);

// A device with a profile and a folder of its own.
class DeviceTest : public testing::Test {
protected:
    // A profile with a key pair of `bits`.
    explicit DeviceTest(int bits = 1024);

    // The call's result; -1 when the runner died, which also fails the test.
    int Call(e2e::Export function, int port);
    // The same, with a server that answers so.
    int Call(e2e::Export function, const std::string &reply);
    std::string Target() const { return folder_.path() + "/list.xml"; }

private:
    e2e::RowFolder folder_;
};

constexpr char kRefusal[] = "HTTP/1.1 403 Forbidden\r\n"
                            "X-Error-Code: 906\r\n"
                            "X-Error-Message: the clock is off\r\n"
                            "X-Server-Timestamp: 2026-11-21 08:00:00.000\r\n"
                            "Content-Length: 0\r\n\r\n";

} // namespace pavonix::ce
