// A context of the log that is left on every path out of the scope.
#pragma once

#include "rsa/log/log_base.h"

namespace pavonix {

// `tag` must not be blank: a blank tag opens nothing that could be left.
class LogContext {
public:
    LogContext(LogBase &log, const char *tag) : log_(log) { log_.enterContext(tag); }
    ~LogContext()
    {
        if (!left_) {
            log_.leaveContext();
        }
    }
    LogContext(const LogContext &) = delete;
    LogContext &operator=(const LogContext &) = delete;

    // For the one step that leaves its caller's context itself.
    void MarkLeft() { left_ = true; }

private:
    LogBase &log_;
    bool left_ = false;
};

} // namespace pavonix
