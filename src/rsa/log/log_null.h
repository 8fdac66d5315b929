// The log for callers that want none.
#pragma once

#include "rsa/log/log_base.h"

namespace pavonix {

// Discards every entry; its renderings are empty. It has no lock.
class LogNull : public LogBase {
public:
    bool getLogText(StringBuffer *rendered) override { return Empty(rendered); }
    bool getLogHtml(StringBuffer *rendered) override { return Empty(rendered); }
    bool getLogXml(StringBuffer *rendered) override { return Empty(rendered); }
    bool keepsEntries() const override { return false; }

private:
    static bool Empty(StringBuffer *rendered)
    {
        rendered->Clear();
        return true;
    }
};

} // namespace pavonix
