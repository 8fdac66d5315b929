#include "rsa/text/data_buffer.h"

#include "rsa/text/allocate.h"
#include "rsa/text/wipe.h"

#include <cstring>

namespace pavonix {

namespace {

constexpr std::uint32_t kByteSlack = 10000;
constexpr std::uint32_t kBlockSlack = 20000;

} // namespace

DataBuffer::~DataBuffer()
{
    mark_.Check();
    Free();
    // volatile: these must really be 0 after destruction
    *const_cast<volatile std::uint32_t *>(&length_) = 0;
    *const_cast<volatile std::uint32_t *>(&capacity_) = 0;
}

void DataBuffer::Free()
{
    Clear();
    if (!borrowed_) {
        delete[] data_;
    }
    data_ = nullptr;
    capacity_ = 0;
    borrowed_ = false;
}

bool DataBuffer::Grow(std::uint64_t newCapacity)
{
    std::uint8_t *grown =
        newCapacity > UINT32_MAX ? nullptr : AllocateArray<std::uint8_t>(static_cast<std::size_t>(newCapacity));
    if (grown == nullptr) {
        Free();
        return false;
    }
    const std::uint32_t length = length_;
    if (length > 0) {
        std::memcpy(grown, data_, length);
    }
    Free();
    data_ = grown;
    length_ = length;
    capacity_ = static_cast<std::uint32_t>(newCapacity);
    return true;
}

bool DataBuffer::AppendByte(std::uint8_t byte)
{
    mark_.Check();
    if (length_ == capacity_ && !Grow(std::uint64_t{length_} + kByteSlack)) {
        return false;
    }
    data_[length_++] = byte;
    return true;
}

bool DataBuffer::AppendFill(std::uint8_t byte, std::uint32_t count)
{
    mark_.Check();
    if (count == 0) {
        return true;
    }
    const std::uint64_t needed = std::uint64_t{length_} + count;
    if (needed > capacity_ && !Grow(needed + kByteSlack)) {
        return false;
    }
    std::memset(data_ + length_, byte, count);
    length_ += count;
    return true;
}

bool DataBuffer::Append(const void *bytes, std::uint32_t count)
{
    mark_.Check();
    if (bytes == nullptr || count == 0) {
        return true;
    }
    const std::uint64_t needed = std::uint64_t{length_} + count;
    if (needed > capacity_ && !Grow(count >= kBlockSlack ? needed : std::uint64_t{length_} + kBlockSlack)) {
        return false;
    }
    std::memcpy(data_ + length_, bytes, count);
    length_ += count;
    return true;
}

bool DataBuffer::EnsureCapacity(std::uint32_t capacity)
{
    mark_.Check();
    return capacity_ >= capacity ? data_ != nullptr : Grow(capacity);
}

// Nothing was ever stored after the length, so there is nothing to wipe there.
void DataBuffer::Clear()
{
    mark_.Check();
    if (!borrowed_) {
        Wipe(data_, length_);
    }
    length_ = 0;
}

void DataBuffer::TakeOver(std::uint8_t *block, std::uint32_t size)
{
    mark_.Check();
    Free();
    data_ = block;
    length_ = size;
    capacity_ = size;
}

void DataBuffer::Borrow(std::uint8_t *bytes, std::uint32_t size)
{
    TakeOver(bytes, size);
    borrowed_ = true;
}

std::uint8_t *DataBuffer::Detach()
{
    mark_.Check();
    std::uint8_t *block = data_;
    data_ = nullptr;
    length_ = 0;
    capacity_ = 0;
    borrowed_ = false;
    return block;
}

std::uint8_t *DataBuffer::data()
{
    mark_.Check();
    return data_;
}

const std::uint8_t *DataBuffer::data() const
{
    mark_.Check();
    return data_;
}

std::uint32_t DataBuffer::length() const
{
    mark_.Check();
    return length_;
}

std::uint32_t DataBuffer::capacity() const
{
    mark_.Check();
    return capacity_;
}

bool DataBuffer::borrowed() const
{
    mark_.Check();
    return borrowed_;
}

} // namespace pavonix
