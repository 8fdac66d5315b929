// The log that keeps its entries.
#pragma once

#include "rsa/log/log_base.h"
#include "rsa/log/log_entry2.h"
#include "rsa/log/zentorp_crit_sec.h"

#include <memory>

namespace pavonix {

// A tree of entries under one root context "ZentorpLog". Contexts nest strictly;
// an entry goes into the innermost context that is open. Several threads may log
// into one Logger: each operation holds its lock.
class Logger : public LogBase {
public:
    Logger();

    bool getLogText(StringBuffer *rendered) override;
    bool getLogHtml(StringBuffer *rendered) override;
    bool getLogXml(StringBuffer *rendered) override;
    bool logError(const char *text) override;
    bool logInfo(const char *text) override;
    bool logRaw(const char *text) override;
    bool clear() override;
    bool enterContext(const char *tag) override;
    bool leaveContext() override; // no effect while the root is the innermost context
    bool logData(const char *tag, const char *text) override;
    bool logDataLong(const char *tag, std::int32_t value) override;
    bool logDataValue(const char *tag, const void *value, std::uint32_t length) override;
    bool logHex(const char *tag, std::uint32_t value) override;
    bool logTickCount(const char *tag) override;
    bool saveText(const WideChar *path) override;

private:
    using Entry = std::unique_ptr<LogEntry2>;
    using Rendering = void (*)(const LogEntry2 &, StringBuffer *);

    void MakeRoot();
    LogEntry2 *Attach(Entry entry);
    bool LogText(LogEntryKind kind, const char *text);
    template <typename MakeContent>
    bool LogTagged(const char *tag, MakeContent makeContent);
    bool Render(Rendering rendering, StringBuffer *rendered);

    ZentorpCritSec section_;
    Entry root_; // null when memory for it ran out
    LogEntry2 *current_ = nullptr;
    // Contexts entered but not in the tree because memory ran out. They are the innermost
    // ones: while there are any, a further context is added to them.
    std::uint32_t lostContexts_ = 0;
};

} // namespace pavonix
