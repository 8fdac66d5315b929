#include "rsa/text/string_buffer.h"

#include "rsa/text/allocate.h"
#include "rsa/text/decimal.h"
#include "rsa/text/wipe.h"

#include <cstring>

namespace pavonix {

namespace {

constexpr std::int32_t kFirstCapacity = 202;
constexpr std::int32_t kPoorCapacity = 4;
constexpr std::int32_t kLargestIncrement = 500000;
constexpr std::int32_t kFill = static_cast<std::int32_t>(0xDDDDDDDDu);

// Shared by all buffers whose allocation failed; a capacity of 1 keeps it unwritten.
char sharedEmpty[1] = {0};

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

} // namespace

StringBuffer::StringBuffer() : capacity_(kFirstCapacity), length_(0), increment_(kFirstCapacity)
{
    data_ = AllocateArray<char>(kFirstCapacity);
    if (data_ == nullptr) {
        data_ = AllocateArray<char>(kPoorCapacity);
        capacity_ = kPoorCapacity;
    }
    if (data_ == nullptr) {
        data_ = sharedEmpty;
        capacity_ = 1;
        return;
    }
    data_[0] = 0;
}

StringBuffer::~StringBuffer()
{
    mark_.Check();
    Free();
    // The fill pattern makes a use after destruction visible in a debugger. volatile: the
    // compiler must not drop these stores.
    *const_cast<char *volatile *>(&data_) = reinterpret_cast<char *>(static_cast<std::uintptr_t>(0xDDDDDDDDu));
    *const_cast<volatile std::int32_t *>(&capacity_) = kFill;
    *const_cast<volatile std::int32_t *>(&length_) = kFill;
    *const_cast<volatile std::int32_t *>(&increment_) = kFill;
}

// The bytes after the length hold no text: CutTo has wiped them.
void StringBuffer::Free()
{
    if (data_ != sharedEmpty) {
        Wipe(data_, static_cast<std::size_t>(length_));
        delete[] data_;
    }
}

void StringBuffer::CutTo(std::int32_t length)
{
    Wipe(data_ + length, static_cast<std::size_t>(length_ - length)); // leaves a terminator there
    length_ = length;
}

bool StringBuffer::Reallocate(std::int64_t newCapacity)
{
    char *grown = newCapacity > INT32_MAX ? nullptr : AllocateArray<char>(static_cast<std::size_t>(newCapacity));
    if (grown == nullptr) {
        return false;
    }
    std::memcpy(grown, data_, static_cast<std::size_t>(length_) + 1);
    Free();
    data_ = grown;
    capacity_ = static_cast<std::int32_t>(newCapacity);
    return true;
}

void StringBuffer::AppendGrowing(const char *bytes, std::int32_t count, std::int32_t terminatorRoom)
{
    mark_.Check();
    if (bytes == nullptr || count <= 0) {
        return;
    }
    if (std::int64_t{length_} + count >= capacity_) {
        const bool ownBytes = bytes >= data_ && bytes < data_ + capacity_;
        const std::ptrdiff_t ownOffset = ownBytes ? bytes - data_ : 0;
        if (!Reallocate(std::int64_t{length_} + increment_ + count + terminatorRoom)) {
            incomplete_ = true;
            return;
        }
        bytes = ownBytes ? data_ + ownOffset : bytes;
        if (increment_ < capacity_ && increment_ < kLargestIncrement) {
            increment_ = capacity_ / 2 < kLargestIncrement ? capacity_ / 2 : kLargestIncrement;
        }
    }
    std::memmove(data_ + length_, bytes, static_cast<std::size_t>(count));
    length_ += count;
    data_[length_] = 0;
}

void StringBuffer::Append(const char *text)
{
    const std::size_t length = text == nullptr ? 0 : std::strlen(text);
    if (length > INT32_MAX) {
        incomplete_ = true;
        return;
    }
    AppendGrowing(text, static_cast<std::int32_t>(length), 1);
}

void StringBuffer::AppendN(const char *bytes, std::int32_t count)
{
    AppendGrowing(bytes, count, 0);
}

void StringBuffer::AppendChar(char character)
{
    AppendGrowing(&character, 1, 0);
}

void StringBuffer::AppendDecimal(std::int32_t value)
{
    Append(DecimalText(value).c_str());
}

void StringBuffer::Reserve(std::int32_t count)
{
    mark_.Check();
    if (count > 0 && std::int64_t{length_} + count >= capacity_) {
        Reallocate(std::int64_t{length_} + increment_ + count + 1);
    }
}

void StringBuffer::Shrink()
{
    mark_.Check();
    if (data_ != sharedEmpty && capacity_ - length_ > 4) {
        Reallocate(std::int64_t{length_} + 1);
    }
}

void StringBuffer::Clear()
{
    mark_.Check();
    incomplete_ = false;
    CutTo(0);
}

const char *StringBuffer::c_str() const
{
    mark_.Check();
    return data_;
}

std::int32_t StringBuffer::length() const
{
    mark_.Check();
    return length_;
}

bool StringBuffer::BeginsWith(const char *prefix) const
{
    mark_.Check();
    return std::strncmp(data_, prefix, std::strlen(prefix)) == 0;
}

bool StringBuffer::EndsWith(const char *suffix) const
{
    mark_.Check();
    const std::size_t count = std::strlen(suffix);
    return count <= static_cast<std::size_t>(length_) && std::memcmp(data_ + length_ - count, suffix, count) == 0;
}

bool StringBuffer::Contains(const char *text) const
{
    mark_.Check();
    return std::strstr(data_, text) != nullptr;
}

bool StringBuffer::ContainsChar(char character) const
{
    mark_.Check();
    return length_ > 0 && std::memchr(data_, character, static_cast<std::size_t>(length_)) != nullptr;
}

void StringBuffer::RemoveChar(char character)
{
    mark_.Check();
    std::int32_t kept = 0;
    for (std::int32_t i = 0; i < length_; ++i) {
        if (data_[i] != character) {
            data_[kept++] = data_[i];
        }
    }
    CutTo(kept);
}

void StringBuffer::ReplaceChar(char from, char to)
{
    mark_.Check();
    for (std::int32_t i = 0; i < length_; ++i) {
        if (data_[i] == from) {
            data_[i] = to;
        }
    }
}

void StringBuffer::Trim()
{
    mark_.Check();
    std::int32_t first = 0;
    std::int32_t end = length_;
    while (first < end && IsBlank(data_[first])) {
        ++first;
    }
    while (end > first && IsBlank(data_[end - 1])) {
        --end;
    }
    if (first > 0) {
        std::memmove(data_, data_ + first, static_cast<std::size_t>(end - first));
    }
    CutTo(end - first);
}

void StringBuffer::ToLower()
{
    mark_.Check();
    for (std::int32_t i = 0; i < length_; ++i) {
        if (data_[i] >= 'A' && data_[i] <= 'Z') {
            data_[i] = static_cast<char>(data_[i] + ('a' - 'A'));
        }
    }
}

} // namespace pavonix
