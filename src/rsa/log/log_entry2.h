// One node of the log's tree. The 2 is part of the interface's name; there is no
// LogEntry.
#pragma once

#include "rsa/text/string_buffer.h"
#include "rsa/text/objects.h"

#include <cstdint>

namespace pavonix {

// The kind of an entry, which decides how it is rendered.
enum class LogEntryKind : char {
    kError = 'E',
    kInfo = 'I',
    kRaw = 'X',
    kData = 'T',    // tag and content
    kContext = 'C', // tag and children
};

// An entry owns its children.
class LogEntry2 : public ZentorpObject {
public:
    explicit LogEntry2(LogEntryKind kind) : kind_(kind) {}
    // Frees the whole tree below, however deep, without recursion.
    ~LogEntry2() override;

    LogEntryKind kind() const { return kind_; }
    StringBuffer &tag() { return tag_; }
    const StringBuffer &tag() const { return tag_; }
    StringBuffer &content() { return content_; }
    const StringBuffer &content() const { return content_; }

    // Takes ownership of the child if it returns true; false when memory runs out.
    [[nodiscard]] bool AddChild(LogEntry2 *child);

    // Null if there is no such entry. nextSibling is the entry added to the parent
    // right after this one.
    LogEntry2 *parent() const { return parent_; }
    const LogEntry2 *firstChild() const { return childCount_ > 0 ? children_[0] : nullptr; }
    const LogEntry2 *nextSibling() const;

private:
    bool MakeRoomForChild();

    LogEntry2 **children_ = nullptr;
    StringBuffer tag_;
    StringBuffer content_;
    LogEntryKind kind_;
    LogEntry2 *parent_ = nullptr;
    std::uint32_t position_ = 0; // among the parent's children
    std::uint32_t childCount_ = 0;
    std::uint32_t childRoom_ = 0;
};

} // namespace pavonix
