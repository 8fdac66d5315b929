// coredll.dll: the heap. Every block is fenced, so that a write past its end, a
// write after it was freed or a second free ends the run, and new and freed bytes
// hold patterns, so that no code works by luck on their former content.
#include "system/coredll.h"
#include "system/open_handles.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <mutex>

namespace pavonix::device {

namespace {

constexpr std::uint32_t kLiving = 0x4C495645;
constexpr std::uint32_t kFreed = 0x46524545;
constexpr unsigned char kFresh = 0xCD;
constexpr unsigned char kDead = 0xDD;
constexpr unsigned char kFence[8] = {0xFE, 0xED, 0xFA, 0xCE, 0xFE, 0xED, 0xFA, 0xCE};

struct BlockHeader {
    std::uint32_t size, state;
};
static_assert(sizeof(BlockHeader) == 8, "blocks stay aligned to 8 bytes");

unsigned char *BytesOf(BlockHeader *header)
{
    return reinterpret_cast<unsigned char *>(header + 1);
}

BlockHeader *CheckedHeader(void *block)
{
    auto *header = static_cast<BlockHeader *>(block) - 1;
    if (header->state != kLiving) {
        Fatal(header->state == kFreed ? "a block used after free" : "free of a block that malloc did not give");
    }
    if (std::memcmp(BytesOf(header) + header->size, kFence, sizeof kFence) != 0) {
        Fatal("a block of " + std::to_string(header->size) + " bytes was written past its end");
    }
    return header;
}

// Freed blocks, kept for a while so that a write to one of them is noticed.
std::deque<BlockHeader *> freedBlocks;
constexpr std::size_t kKeptBlocks = 64;
std::mutex heapLock; // of the counts and the freed blocks

void CheckFreed(BlockHeader *header)
{
    const unsigned char *bytes = BytesOf(header);
    if (!std::all_of(bytes, bytes + header->size, [](unsigned char byte) { return byte == kDead; })) {
        Fatal("a block of " + std::to_string(header->size) + " bytes was written after it was freed");
    }
}

void *Malloc(std::uint32_t size)
{
    if (size > 0x7FFFFFFF) {
        return nullptr;
    }
    auto *header = static_cast<BlockHeader *>(std::malloc(sizeof(BlockHeader) + size + sizeof kFence));
    if (header == nullptr) {
        return nullptr;
    }
    *header = {size, kLiving};
    std::memset(BytesOf(header), kFresh, size);
    std::memcpy(BytesOf(header) + size, kFence, sizeof kFence);
    const std::lock_guard lock(heapLock);
    ++openHandles.heapBlocks;
    openHandles.heapBytes += size;
    openHandles.heapPeak = std::max(openHandles.heapPeak, openHandles.heapBytes);
    return BytesOf(header);
}

void Free(void *block)
{
    if (block == nullptr) {
        return;
    }
    BlockHeader *header = CheckedHeader(block);
    const std::lock_guard lock(heapLock);
    --openHandles.heapBlocks;
    openHandles.heapBytes -= header->size;
    header->state = kFreed;
    std::memset(block, kDead, header->size);
    freedBlocks.push_back(header);
    if (freedBlocks.size() > kKeptBlocks) {
        CheckFreed(freedBlocks.front());
        std::free(freedBlocks.front());
        freedBlocks.pop_front();
    }
}

void *Calloc(std::uint32_t count, std::uint32_t size)
{
    std::uint32_t bytes = 0;
    void *block = __builtin_mul_overflow(count, size, &bytes) ? nullptr : Malloc(bytes);
    return block == nullptr ? nullptr : std::memset(block, 0, bytes);
}

// Always moves, so that a pointer kept to the old block shows. A size of 0 frees.
void *Realloc(void *block, std::uint32_t size)
{
    if (block == nullptr) {
        return Malloc(size);
    }
    if (size == 0) {
        Free(block);
        return nullptr;
    }
    void *moved = Malloc(size);
    if (moved != nullptr) {
        std::memcpy(moved, block, std::min(size, CheckedHeader(block)->size));
        Free(block);
    }
    return moved;
}

} // namespace

void CheckFreedBlocks()
{
    std::for_each(freedBlocks.begin(), freedBlocks.end(), CheckFreed);
}

void AddMemoryImports(std::vector<Import> &table)
{
    table.push_back(Failing<&Malloc, 0>(kCoreDll, "malloc"));
    table.push_back(Failing<&Calloc, 0>(kCoreDll, "calloc"));
    table.push_back(Failing<&Realloc, 0>(kCoreDll, "realloc"));
    table.push_back(Unfailing<&Free>(kCoreDll, "free"));
}

} // namespace pavonix::device
