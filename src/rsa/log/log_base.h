// The interface of the engine's diagnostic log.
#pragma once

#include "platform/wide_char.h"
#include "rsa/text/string_buffer.h"

#include <cstdint>

namespace pavonix {

// Logging never makes an operation fail: a null text or an empty tag is ignored, an
// entry for which memory runs out is dropped, and every operation but saveText returns
// true. In this base every operation does nothing. A tag is trimmed, and its spaces
// become "_". Declaration order fixes the vtable layout and is part of the interface. The
// shop uses only text and number entries, contexts and the plain text.
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

    // Every enterContext with a tag needs one leaveContext, even if memory for the
    // context ran out. Use LogContext.
    virtual bool enterContext(const char *) { return true; }
    virtual bool leaveContext() { return true; }

    // A missing text is logged as "(NULL)".
    virtual bool logData(const char *, const char *) { return true; }
    virtual bool logDataLong(const char *, std::int32_t) { return true; }
    // `length` bytes at `value`, logged as upper-case hexadecimal digits.
    virtual bool logDataValue(const char *, const void *, std::uint32_t) { return true; }
    // As "0x%x".
    virtual bool logHex(const char *, std::uint32_t) { return true; }
    // False for a log that discards everything, so that a caller can skip building an
    // expensive entry.
    virtual bool keepsEntries() const { return true; }
    // The system's millisecond tick count, as "%x".
    virtual bool logTickCount(const char *) { return true; }

    // Writes the plain text into the file, replacing it; false when that failed.
    [[nodiscard]] virtual bool saveText(const WideChar *) { return true; }

    // A size in bytes; no virtual slot of its own.
    void logSize(const char *tag, std::uint32_t size) { logDataLong(tag, static_cast<std::int32_t>(size)); }
};

// A log that discards every entry and renders as the empty text. It has no lock. Not
// used by the three calls.
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

// Another log that discards everything; part of the component's interface, unused here.
class ErrorLog : public LogBase {};

// A context of the log that is left on every path out of the scope. `tag` must not
// be empty or all spaces: such a tag opens no context.
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
