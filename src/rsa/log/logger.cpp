#include "rsa/log/logger.h"

#include "platform/clock.h"
#include "platform/files.h"
#include "rsa/encoding/content_coding.h"
#include "rsa/log/log_rendering.h"
#include "rsa/text/allocate.h"

namespace pavonix {

namespace {

constexpr char kRootTag[] = "ZentorpLog";
constexpr char kMissing[] = "(NULL)";

// Needs no memory: a tag that could not be copied is a lost entry, not an empty tag.
bool IsBlankTag(const char *tag)
{
    while (tag != nullptr && (*tag == ' ' || *tag == '\t' || *tag == '\n' || *tag == '\r')) {
        ++tag;
    }
    return tag == nullptr || *tag == 0;
}

// Null for an empty or all-space tag and when memory runs out.
std::unique_ptr<LogEntry2> MakeTagged(LogEntryKind kind, const char *tag)
{
    std::unique_ptr<LogEntry2> entry(IsBlankTag(tag) ? nullptr : AllocateObject<LogEntry2>(kind));
    if (entry != nullptr) {
        entry->tag().Append(tag);
        entry->tag().Trim();
        entry->tag().ReplaceChar(' ', '_');
        if (!entry->tag().complete()) {
            entry.reset();
        }
    }
    return entry;
}

// "%x"
void AppendHex(std::uint32_t value, StringBuffer *text)
{
    int shift = 28;
    while (shift > 0 && value >> shift == 0) {
        shift -= 4;
    }
    for (; shift >= 0; shift -= 4) {
        text->AppendChar("0123456789abcdef"[value >> shift & 15]);
    }
}

} // namespace

Logger::Logger()
{
    MakeRoot();
}

void Logger::MakeRoot()
{
    root_ = MakeTagged(LogEntryKind::kContext, kRootTag);
    current_ = root_.get();
    lostContexts_ = 0;
}

// Null when the entry was dropped.
LogEntry2 *Logger::Attach(Entry entry)
{
    const bool whole = entry != nullptr && entry->content().complete();
    if (!whole || current_ == nullptr || !current_->AddChild(entry.get())) {
        return nullptr;
    }
    return entry.release();
}

bool Logger::LogText(LogEntryKind kind, const char *text)
{
    if (text == nullptr) {
        return true;
    }
    const CritSecLock lock(section_);
    Entry entry(AllocateObject<LogEntry2>(kind));
    if (entry != nullptr) {
        entry->content().Append(text);
        Attach(std::move(entry));
    }
    return true;
}

bool Logger::logError(const char *text)
{
    return LogText(LogEntryKind::kError, text);
}

bool Logger::logInfo(const char *text)
{
    return LogText(LogEntryKind::kInfo, text);
}

bool Logger::logRaw(const char *text)
{
    return LogText(LogEntryKind::kRaw, text);
}

bool Logger::clear()
{
    const CritSecLock lock(section_);
    MakeRoot();
    return true;
}

bool Logger::enterContext(const char *tag)
{
    if (IsBlankTag(tag)) {
        return true;
    }
    Entry entry = MakeTagged(LogEntryKind::kContext, tag);
    const CritSecLock lock(section_);
    LogEntry2 *context = lostContexts_ == 0 ? Attach(std::move(entry)) : nullptr;
    if (context != nullptr) {
        current_ = context;
    } else {
        ++lostContexts_;
    }
    return true;
}

bool Logger::leaveContext()
{
    const CritSecLock lock(section_);
    if (lostContexts_ > 0) {
        --lostContexts_;
    } else if (current_ != root_.get()) {
        current_ = current_->parent();
    }
    return true;
}

// MakeTagged prepares the tag before the lock is taken; `makeContent` writes into the
// entry under the lock.
template <typename MakeContent>
bool Logger::LogTagged(const char *tag, MakeContent makeContent)
{
    Entry entry = MakeTagged(LogEntryKind::kData, tag);
    if (entry != nullptr) {
        const CritSecLock lock(section_);
        makeContent(&entry->content());
        Attach(std::move(entry));
    }
    return true;
}

bool Logger::logData(const char *tag, const char *text)
{
    return LogTagged(tag, [=](StringBuffer *content) { content->Append(text != nullptr ? text : kMissing); });
}

bool Logger::logDataLong(const char *tag, std::int32_t value)
{
    return LogTagged(tag, [=](StringBuffer *content) { content->AppendDecimal(value); });
}

bool Logger::logDataValue(const char *tag, const void *value, std::uint32_t length)
{
    if (value == nullptr) {
        return logData(tag, nullptr);
    }
    return LogTagged(tag, [=](StringBuffer *content) {
        ContentCoding::EncodeHex(static_cast<const std::uint8_t *>(value), length, content);
    });
}

bool Logger::logHex(const char *tag, std::uint32_t value)
{
    return LogTagged(tag, [=](StringBuffer *content) {
        content->Append("0x");
        AppendHex(value, content);
    });
}

bool Logger::logTickCount(const char *tag)
{
    return LogTagged(tag, [](StringBuffer *content) { AppendHex(platform::ReadTickCount(), content); });
}

bool Logger::Render(Rendering rendering, StringBuffer *rendered)
{
    rendered->Clear();
    const CritSecLock lock(section_);
    if (root_ != nullptr) {
        rendering(*root_, rendered);
    }
    return true;
}

bool Logger::getLogText(StringBuffer *rendered)
{
    return Render(RenderText, rendered);
}

bool Logger::getLogHtml(StringBuffer *rendered)
{
    return Render(RenderHtml, rendered);
}

bool Logger::getLogXml(StringBuffer *rendered)
{
    return Render(RenderXml, rendered);
}

bool Logger::saveText(const WideChar *path)
{
    const CritSecLock lock(section_);
    StringBuffer text;
    getLogText(&text);
    if (!text.complete()) {
        return false;
    }
    (void)platform::RemoveFile(path); // streams only append
    platform::Stream *file = platform::OpenStream(path, platform::StreamMode::kAppend);
    if (file == nullptr) {
        return false;
    }
    const std::uint32_t length = static_cast<std::uint32_t>(text.length());
    const bool written = platform::WriteStream(file, text.c_str(), length) == length;
    return platform::CloseStream(file) && written;
}

} // namespace pavonix
