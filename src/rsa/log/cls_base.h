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
    bool lastMethodSuccess() const { return lastMethodSuccess_; } // for callers other than the shop, as log() is
    // What the last public operation logged, as plain text; replaces `text`.
    void GetLastErrorText(StringBuffer *text) { log_.getLogText(text); }

    // The first act of a public operation: the log then describes this operation
    // alone, and a long-lived process does not grow. Answers the log.
    LogBase &StartMethod()
    {
        log_.clear();
        lastMethodSuccess_ = false;
        return log_;
    }
    // The last entry of a public operation, "Success." or "Failed.", inside its
    // context. Answers `success`.
    bool RecordResult(bool success)
    {
        lastMethodSuccess_ = success;
        success ? log_.logInfo("Success.") : log_.logError("Failed.");
        return success;
    }

private:
    Logger log_;
    bool lastMethodSuccess_ = false;
};

} // namespace pavonix
