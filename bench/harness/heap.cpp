#include "harness/heap.h"

#include <cerrno>
#include <malloc.h>

// glibc's allocator under its internal names.
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void *block);
}

namespace {

struct Count {
    bool on = false;
    std::ptrdiff_t held = 0;
    std::ptrdiff_t peak = 0;
};

thread_local Count count; // the server's thread is not counted

void *Taken(void *block)
{
    if (count.on && block != nullptr) {
        count.held += static_cast<std::ptrdiff_t>(malloc_usable_size(block));
        count.peak = count.held > count.peak ? count.held : count.peak;
    }
    return block;
}

void Given(void *block)
{
    if (count.on && block != nullptr) {
        count.held -= static_cast<std::ptrdiff_t>(malloc_usable_size(block));
    }
}

} // namespace

extern "C" {

void *malloc(std::size_t size)
{
    return Taken(__libc_malloc(size));
}

void *calloc(std::size_t number, std::size_t size)
{
    return Taken(__libc_calloc(number, size));
}

void *realloc(void *block, std::size_t size)
{
    Given(block); // a failure would end the benchmark anyway
    return Taken(__libc_realloc(block, size));
}

void *aligned_alloc(std::size_t alignment, std::size_t size)
{
    return Taken(__libc_memalign(alignment, size));
}

int posix_memalign(void **block, std::size_t alignment, std::size_t size)
{
    *block = Taken(__libc_memalign(alignment, size));
    return *block == nullptr ? ENOMEM : 0;
}

void free(void *block)
{
    Given(block);
    __libc_free(block);
}

} // extern "C"

namespace pavonix::bench {

std::size_t HeapPeak(const std::function<void()> &work)
{
    count = {.on = true, .held = 0, .peak = 0};
    work();
    count.on = false;
    return static_cast<std::size_t>(count.peak);
}

} // namespace pavonix::bench
