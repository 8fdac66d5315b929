// The base that gives a component its log and remembers how its last public
// operation ended.
#pragma once

#include "rsa/log/logger.h"

namespace pavonix {

class ClsBase {
public:
    ClsBase() = default;
    virtual ~ClsBase() = default;
    ClsBase(const ClsBase &) = delete;
    ClsBase &operator=(const ClsBase &) = delete;

    LogBase &log() { return log_; }
    bool lastMethodSuccess() const { return lastMethodSuccess_; } // like log(), not used by the three calls
    // Replaces `text` by the log of the last public operation, as plain text.
    void GetLastErrorText(StringBuffer *text) { log_.getLogText(text); }

    // The first act of a public operation: the log then describes this operation
    // alone, and a long-lived process does not grow. Returns the log.
    LogBase &StartMethod()
    {
        log_.clear();
        lastMethodSuccess_ = false;
        return log_;
    }
    // The last entry of a public operation, "Success." or "Failed.", inside its
    // context. Returns `success`.
    bool RecordResult(bool success)
    {
        lastMethodSuccess_ = success;
        if (success) {
            log_.logInfo("Success.");
        } else {
            log_.logError("Failed.");
        }
        return success;
    }

private:
    Logger log_;
    bool lastMethodSuccess_ = false;
};

} // namespace pavonix
