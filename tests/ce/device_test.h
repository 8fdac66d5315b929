// Shared by the tests of the device's image: calls through the runner, and the runner's own
// commands.
#pragma once

#include "driver/suite.h"
#include "driver/tree.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

namespace pavonix::ce {

// Paths of the programs; the plug-ins are the emulator's.
struct Programs {
    std::string emulator, runner, dll, probe, plugins;
};
Programs &ThePrograms();

// A runner with other options, which receives all calls while this object exists.
class OtherRunner {
public:
    explicit OtherRunner(const std::string &dll, const std::string &emulatorOptions = "",
                         const std::string &runnerOptions = "");
    ~OtherRunner() { std::swap(caller_, e2e::TheSuite().caller); }
    OtherRunner(const OtherRunner &) = delete;
    OtherRunner &operator=(const OtherRunner &) = delete;

    // The emulator's option for one of its plug-ins.
    static std::string Plugin(const std::string &name)
    {
        return "-plugin " + ThePrograms().plugins + "/lib" + name + ".so";
    }

private:
    std::unique_ptr<e2e::CallerProcess> caller_;
};

// Sends the runner one of its own commands and returns the reply.
std::string Ask(const std::string &command);

using Counts = std::map<std::string, int>;

// Returns the runner's "heap", "peak", "sockets" and so on, and resets the peak.
Counts Stats();
// Returns the number of calls of each import since the last StopFaults.
Counts ImportCalls();
// Stops injecting faults; returns how many there were since the last StopFaults.
int StopFaults();
// Fails the nth call of an import from now; returns false if it cannot fail.
bool FailOnce(const std::string &name, int nth);

// A device with its own profile and folder.
class DeviceTest : public testing::Test {
protected:
    // A profile with a key pair of `bits`.
    explicit DeviceTest(int bits = 1024);

    // Returns the call's result; -1 if the runner crashed, which also fails the test.
    int Call(e2e::Export function, int port);
    // The same with a server that sends this reply.
    int Call(e2e::Export function, const std::string &reply);
    // The bytes of the last purchase's record.
    const std::string &Record() const { return record_; }
    std::string Target() const { return folder_.path() + "/list.xml"; }

private:
    e2e::RowFolder folder_;
    std::string record_;
};

constexpr char kRefusal[] = "HTTP/1.1 403 Forbidden\r\n"
                            "X-Error-Code: 906\r\n"
                            "X-Error-Message: the clock is off\r\n"
                            "X-Server-Timestamp: 2026-11-21 08:00:00.000\r\n"
                            "Content-Length: 0\r\n\r\n";

} // namespace pavonix::ce
