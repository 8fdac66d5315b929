#include "system/import_gate.h"

#include "system/coredll.h"
#include "system/open_handles.h"

namespace pavonix::device {

ImportGate::ImportGate(const char *library, const char *name, bool canFail)
    : library_(library), name_(name), canFail_(canFail)
{
}

bool ImportGate::NextCallFails()
{
    ++calls_;
    if (entryRuns && library_ == kWinsockDll) {
        Fatal("Winsock is called from an image's entry");
    }
    if (untilFault_ == 0) {
        return false;
    }
    if (untilFault_ > 1) {
        --untilFault_;
        return false;
    }
    untilFault_ = failsEver_ ? 1 : 0;
    ++faults_;
    return true;
}

void ImportGate::FailAt(unsigned nth, bool ever)
{
    untilFault_ = nth;
    failsEver_ = ever;
}

void ImportGate::Restart()
{
    calls_ = faults_ = untilFault_ = 0;
}

} // namespace pavonix::device
