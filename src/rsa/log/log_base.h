// The engine's diagnostic log as everybody who logs sees it.
#pragma once

#include "platform/wide_char.h"
#include "rsa/text/string_buffer.h"

#include <cstdint>

namespace pavonix {

// Logging never fails what is being logged: a missing text or an empty tag is
// ignored, an entry that gets no memory is dropped, and every operation but
// saveText answers true. In this base every operation does nothing.
// A tag is trimmed, and its spaces become "_". The order of the declarations is
// that of the virtual slots and is part of the interface, of which the shop needs
// the entries with texts and numbers, the contexts and the plain text alone.
class LogBase {
public:
    LogBase() = default;
    virtual ~LogBase() = default;
    LogBase(const LogBase &) = delete;
    LogBase &operator=(const LogBase &) = delete;

    // The renderings replace the content of `rendered`.
    virtual bool getLogText(StringBuffer *) { return true; }
    virtual bool getLogHtml(StringBuffer *) { return true; }
    virtual bool getLogXml(StringBuffer *) { return true; }

    virtual bool logError(const char *) { return true; }
    virtual bool logInfo(const char *) { return true; }
    // A text that the XML rendering writes without an element around it.
    virtual bool logRaw(const char *) { return true; }
    virtual bool clear() { return true; }

    // Every enterContext with a tag is answered by one leaveContext, whether or
    // not there was memory for the context; LogContext sees to that.
    virtual bool enterContext(const char *) { return true; }
    virtual bool leaveContext() { return true; }

    // A missing text is logged as "(NULL)".
    virtual bool logData(const char *, const char *) { return true; }
    virtual bool logDataLong(const char *, std::int32_t) { return true; }
    // `length` bytes at `value`, logged as upper-case hexadecimal digits.
    virtual bool logDataValue(const char *, const void *, std::uint32_t) { return true; }
    // As "0x%x".
    virtual bool logHex(const char *, std::uint32_t) { return true; }
    // False for a log that discards everything, so that a caller can spare
    // itself the making of a costly entry.
    virtual bool keepsEntries() const { return true; }
    // The system's millisecond tick count, as "%x".
    virtual bool logTickCount(const char *) { return true; }

    // Writes the plain text into the file, replacing it; false when that failed.
    virtual bool saveText(const WideChar *) { return true; }

    // A size in bytes; no virtual slot of its own.
    void logSize(const char *tag, std::uint32_t size) { logDataLong(tag, static_cast<std::int32_t>(size)); }
};

// The log for callers that want none: it discards every entry, and its renderings
// are empty. It has no lock. Part of the component's surface; the shop never asks
// for it.
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

// A further log of the component, which keeps nothing. Nothing in the library makes one.
class ErrorLog : public LogBase {};

// A context of the log that is left on every path out of the scope. `tag` must
// not be blank: a blank tag opens nothing that could be left.
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
