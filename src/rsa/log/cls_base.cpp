#include "rsa/log/cls_base.h"

namespace pavonix {

LogBase &ClsBase::StartMethod()
{
    log_.clear();
    lastMethodSuccess_ = false;
    return log_;
}

bool ClsBase::RecordResult(bool success)
{
    lastMethodSuccess_ = success;
    if (success) {
        log_.logInfo("Success.");
    } else {
        log_.logError("Failed.");
    }
    return success;
}

} // namespace pavonix
