#include "device_commands.h"

#include "system/holdings.h"
#include "system/import_table.h"

namespace pavonix::device {

namespace {

std::string Stats()
{
    std::string text = "stats " + holdings.Text();
    holdings.heapPeak = holdings.heapBytes;
    return text;
}

std::string Count()
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

std::string Calm()
{
    unsigned faults = 0;
    for (const Import &import : ImportTable()) {
        faults += import.gate->Faults();
        import.gate->Restart();
    }
    return "calm " + std::to_string(faults);
}

} // namespace

std::string AnswerDeviceCommand(const std::string &command, std::istream &words)
{
    if (command == "stats") {
        return Stats();
    }
    if (command == "count") {
        return Count();
    }
    if (command == "fail") {
        return Fail(words);
    }
    if (command == "calm") {
        return Calm();
    }
    return "";
}

} // namespace pavonix::device
