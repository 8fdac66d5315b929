// What the tests on the device's image share: calls into it through the runner,
// and the runner's own commands.
#pragma once

#include "driver/suite.h"
#include "driver/tree.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pavonix::ce {

// Where everything is; the plug-ins are the emulator's.
struct Programs {
    std::string emulator, runner, dll, probe, plugins;
};
Programs &ThePrograms();

// A runner with options of its own; calls go to it while it lives. Whoever wants
// to know how it ended asks.
class OtherRunner {
public:
    // Options of the emulator, such as a plug-in's, and of the runner.
    OtherRunner(const std::string &dll, const std::vector<std::string> &emulatorOptions,
                const std::vector<std::string> &runnerOptions);
    ~OtherRunner() { std::swap(caller_, e2e::TheSuite().caller); }
    OtherRunner(const OtherRunner &) = delete;
    OtherRunner &operator=(const OtherRunner &) = delete;

    // A plug-in as an option of the emulator.
    static std::string Plugin(const std::string &name) { return ThePrograms().plugins + "/lib" + name + ".so"; }

private:
    std::unique_ptr<e2e::CallerProcess> caller_;
};

// A command to the runner that only it knows, and its answer.
std::string Ask(const std::string &command);

using Counts = std::map<std::string, int>;

// "heap", "peak", "sockets" and so on, as the runner tells them; the peak starts anew.
Counts Stats();
// The imports called since the last Calm, by name.
Counts ImportCalls();
// No faults from now on; returns how many there were since the last Calm.
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
    // The last purchase's record, byte by byte.
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
