// operator new and delete over the C library's heap: no Windows flavour links a
// C++ run-time library. Only the forms that return null exist: a plain `new` would
// not link, because nothing in the library could handle its failure.
#include <cstdlib>
#include <new>

const std::nothrow_t std::nothrow{};

void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    return std::malloc(size != 0 ? size : 1);
}

void *operator new[](std::size_t size, const std::nothrow_t &) noexcept
{
    return std::malloc(size != 0 ? size : 1);
}

void operator delete(void *block) noexcept
{
    std::free(block);
}

void operator delete[](void *block) noexcept
{
    std::free(block);
}

void operator delete(void *block, std::size_t) noexcept
{
    std::free(block);
}

void operator delete[](void *block, std::size_t) noexcept
{
    std::free(block);
}

void operator delete(void *block, const std::nothrow_t &) noexcept
{
    std::free(block);
}

void operator delete[](void *block, const std::nothrow_t &) noexcept
{
    std::free(block);
}
