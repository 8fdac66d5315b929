// A growable zero-terminated string of 8-bit characters.
#pragma once

#include "rsa/text/integrity_mark.h"
#include "rsa/text/objects.h"

#include <cstdint>

namespace pavonix {

// Lengths and capacities are signed 32-bit byte counts. When memory runs
// out, the append is dropped, the old content stays, and complete() is false until the
// next Clear. Arguments may point into the buffer itself. The text may be a key:
// characters are wiped when they are dropped or freed.
class StringBuffer : public ZentorpObject {
public:
    StringBuffer();
    ~StringBuffer() override;

    void Append(const char *text); // zero-terminated; null appends nothing
    void AppendN(const char *bytes, std::int32_t count);
    void AppendChar(char character);
    void AppendDecimal(std::int32_t value);

    // Makes room for `count` more characters without changing the increment.
    void Reserve(std::int32_t count);
    void Clear();

    const char *c_str() const;
    std::int32_t length() const;
    std::int32_t capacity() const { return Checked(capacity_); }
    std::int32_t increment() const { return Checked(increment_); } // growth beyond what an append needs
    // False when an append was dropped since construction or the last Clear.
    bool complete() const { return !Checked(incomplete_); }

    bool BeginsWith(const char *prefix) const;
    bool Contains(const char *text) const;
    void RemoveChar(char character);
    void ReplaceChar(char from, char to);
    void Trim();    // spaces, tabs, line feeds and carriage returns at both ends
    void ToLower(); // ASCII letters

    // Not used by the three calls.
    bool EndsWith(const char *suffix) const;
    bool ContainsChar(char character) const;
    // Frees capacity beyond the text and its terminator if more than four bytes are unused.
    void Shrink();

private:
    template <typename Value>
    Value Checked(Value value) const
    {
        mark_.Check();
        return value;
    }
    bool Reallocate(std::int64_t newCapacity);
    void Free();
    void CutTo(std::int32_t length);
    void AppendGrowing(const char *bytes, std::int32_t count, std::int32_t terminatorRoom);

    IntegrityMark<0xAA> mark_;
    bool incomplete_ = false;
    char *data_;
    std::int32_t capacity_;
    std::int32_t length_;
    std::int32_t increment_;
};

} // namespace pavonix
