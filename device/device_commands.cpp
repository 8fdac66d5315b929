#include "device_commands.h"

#include "system/coredll.h"
#include "system/open_handles.h"
#include "system/import_table.h"
#include "system/open_files.h"

#include <map>

namespace pavonix::device {

namespace {

std::string Stats(std::istream &)
{
    CheckFreedBlocks();
    std::string text = "stats " + openHandles.Text();
    openHandles.heapPeak = openHandles.heapBytes;
    return text;
}

std::string Count(std::istream &)
{
    std::string text = "count";
    for (const Import &import : ImportTable()) {
        if (import.gate->Calls() != 0) {
            text += std::string(" ") + import.gate->Name() + "=" + std::to_string(import.gate->Calls());
        }
    }
    return text;
}

std::string Fail(std::istream &words)
{
    std::string name, howOften;
    unsigned nth = 0;
    words >> name >> nth >> howOften;
    if (!words || nth == 0 || (howOften != "once" && howOften != "ever")) {
        return "error fail needs NAME N once|ever";
    }
    ImportGate *gate = FindGate(name);
    if (gate == nullptr || !gate->CanFail()) {
        return "error " + name + (gate == nullptr ? " is not an import" : " cannot fail");
    }
    gate->FailAt(nth, howOften == "ever");
    return "ok";
}

std::string Calm(std::istream &)
{
    unsigned faults = 0;
    for (const Import &import : ImportTable()) {
        faults += import.gate->Faults();
        import.gate->Restart();
    }
    return "calm " + std::to_string(faults);
}

std::string Winsock(std::istream &words)
{
    unsigned starts = 0;
    words >> starts;
    openHandles.applicationStarts += starts;
    openHandles.winsockStarts += starts;
    return "winsock " + std::to_string(openHandles.winsockStarts);
}

std::string Hold(std::istream &words)
{
    std::string name;
    words >> name;
    openFiles.Hold(name);
    return "ok";
}

std::string Release(std::istream &)
{
    openFiles.ReleaseAll();
    return "ok";
}

} // namespace

std::string RunDeviceCommand(const std::string &command, std::istream &words)
{
    static const std::map<std::string, std::string (*)(std::istream &)> kCommands = {
        {"stats", Stats},     {"count", Count}, {"fail", Fail},       {"calm", Calm},
        {"winsock", Winsock}, {"hold", Hold},   {"release", Release},
    };
    const auto found = kCommands.find(command);
    return found == kCommands.end() ? "" : found->second(words);
}

} // namespace pavonix::device
