// The library allocates with new (std::nothrow), LibTomMath with malloc, calloc and realloc
// (renamed in the copy that the tests link): both are counted and can fail. The throwing new
// of the tests themselves is not counted.
#include "support/tap.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <string_view>
#include <unordered_map>

using pavonix::tap::EnterAllocation;
using pavonix::tap::TheState;

namespace {

using Blocks = std::unordered_map<void *, std::size_t>;

Blocks &LibraryBlocks()
{
    static Blocks *blocks = new Blocks; // never destroyed: the library frees at exit
    return *blocks;
}

void *Allocate(std::size_t size)
{
    void *block = EnterAllocation() ? nullptr : std::malloc(size);
    if (block != nullptr) {
        std::memset(block, 0xA5, size); // hides earlier contents
        auto &state = TheState();
        LibraryBlocks().emplace(block, size);
        ++state.held.blocks;
        state.bytes += static_cast<std::int64_t>(size);
        state.peakBytes = state.bytes > state.peakBytes ? state.bytes : state.peakBytes;
    }
    return block;
}

void Free(void *block)
{
    const auto found = LibraryBlocks().find(block);
    if (found != LibraryBlocks().end()) {
        auto &state = TheState();
        --state.held.blocks;
        state.bytes -= static_cast<std::int64_t>(found->second);
        const std::string_view bytes(static_cast<const char *>(block), found->second);
        state.freedWithSecrets +=
            std::any_of(state.secrets.begin(), state.secrets.end(),
                        [&](const std::string &secret) { return bytes.find(secret) != bytes.npos; });
        LibraryBlocks().erase(found);
    }
    std::free(block);
}

// The bookkeeping itself allocates and frees.
thread_local bool inside = false;

// For tests with several threads.
std::mutex &BookLock()
{
    static std::mutex *lock = new std::mutex; // never destroyed: the library frees at exit
    return *lock;
}

void FreeOnce(void *block)
{
    if (inside) {
        std::free(block);
        return;
    }
    inside = true;
    BookLock().lock();
    Free(block);
    BookLock().unlock();
    inside = false;
}

void *AllocateOnce(std::size_t size)
{
    inside = true;
    const std::lock_guard lock(BookLock());
    void *block = Allocate(size);
    inside = false;
    return block;
}

void *AllocateOrThrow(std::size_t size)
{
    void *block = std::malloc(size > 0 ? size : 1);
    return block != nullptr ? block : throw std::bad_alloc();
}

} // namespace

void *operator new(std::size_t size)
{
    return AllocateOrThrow(size);
}
void *operator new[](std::size_t size)
{
    return AllocateOrThrow(size);
}
void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    return AllocateOnce(size);
}
void *operator new[](std::size_t size, const std::nothrow_t &) noexcept
{
    return AllocateOnce(size);
}
void operator delete(void *block) noexcept
{
    FreeOnce(block);
}
void operator delete[](void *block) noexcept
{
    FreeOnce(block);
}
void operator delete(void *block, std::size_t) noexcept
{
    FreeOnce(block);
}
void operator delete[](void *block, std::size_t) noexcept
{
    FreeOnce(block);
}

extern "C" {

void *TapMalloc(std::size_t size)
{
    return AllocateOnce(size);
}

void *TapCalloc(std::size_t count, std::size_t size)
{
    void *block = AllocateOnce(count * size);
    return block == nullptr ? nullptr : std::memset(block, 0, count * size);
}

void *TapRealloc(void *block, std::size_t size)
{
    const auto old = LibraryBlocks().find(block);
    void *grown = AllocateOnce(size);
    if (grown != nullptr && old != LibraryBlocks().end()) {
        std::memcpy(grown, block, old->second < size ? old->second : size);
        FreeOnce(block);
    }
    return grown;
}

void TapFree(void *block)
{
    FreeOnce(block);
}

} // extern "C"
