#include "device_test.h"

#include "driver/device_key.h"
#include "driver/scripted_server.h"

#include <cstdlib>
#include <sstream>

namespace pavonix::ce {

namespace {

// "word name=number name=number"
Counts ReadCounts(const std::string &line)
{
    std::istringstream words(line);
    Counts counts;
    for (std::string word; words >> word;) {
        const std::size_t sign = word.find('=');
        if (sign != std::string::npos) {
            counts[word.substr(0, sign)] = std::atoi(word.c_str() + sign + 1);
        }
    }
    return counts;
}

} // namespace

Programs &ThePrograms()
{
    static Programs programs;
    return programs;
}

OtherRunner::OtherRunner(const std::string &dll, const std::string &emulatorOptions, const std::string &runnerOptions)
{
    const Programs &programs = ThePrograms();
    caller_ = std::make_unique<e2e::CallerProcess>(programs.emulator + " " + emulatorOptions + " " + programs.runner +
                                                       " " + runnerOptions + " " + dll,
                                                   e2e::TheSuite().scratch + "/other-errors.txt");
    std::swap(caller_, e2e::TheSuite().caller);
}

std::string Ask(const std::string &command)
{
    const std::optional<std::string> answer = e2e::TheSuite().caller->Ask(command);
    if (!answer) {
        ADD_FAILURE() << "the runner crashed: " << e2e::TheSuite().caller->ErrorOutput();
    }
    return answer.value_or("");
}

Counts Stats()
{
    return ReadCounts(Ask("stats"));
}

Counts ImportCalls()
{
    return ReadCounts(Ask("count"));
}

int StopFaults()
{
    std::istringstream words(Ask("calm"));
    std::string command;
    int faults = -1;
    words >> command >> faults;
    return faults;
}

bool FailOnce(const std::string &name, int nth)
{
    return Ask("fail " + name + " " + std::to_string(nth) + " once") == "ok";
}

DeviceTest::DeviceTest(int bits) : folder_(e2e::TheSuite().scratch)
{
    const e2e::DeviceKey key(bits);
    e2e::WriteFile(folder_.path() + "/profile.txt", std::string(e2e::kIdentity) + "Public-Key: " + key.PublicXml() +
                                                        "\nPrivate-Key: " + key.PrivateXml() + "\n");
}

int DeviceTest::Call(e2e::Export function, int port)
{
    const std::vector<int> words[] = {{0, 0, 1, 2, 3, 4, 5}, {0, 0, 1, 2}, {0, 0, 1, 2, 0}};
    const auto answer = e2e::MakeCall({.function = function,
                                       .profile = e2e::LibraryPath(e2e::Flavour::kCe, folder_.path() + "/profile.txt"),
                                       .words = words[static_cast<int>(function)],
                                       .target = e2e::LibraryPath(e2e::Flavour::kCe, Target()),
                                       .force = 1,
                                       .url = u"http://127.0.0.1/goods",
                                       .port = port});
    record_ = answer ? answer->record : "";
    return answer ? answer->result : -1;
}

int DeviceTest::Call(e2e::Export function, const std::string &reply)
{
    const e2e::ScriptedServer server({.pieces = {reply}, .ending = e2e::Ending::kCloses});
    return Call(function, server.port());
}

} // namespace pavonix::ce
