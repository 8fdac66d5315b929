// Memory and text functions for the test program's own use: the program must start
// and report an image that lacks one of coredll's.
#include <cstddef>

// The compiler must not recognise these loops as the functions that they define.
#pragma GCC optimize("no-tree-loop-distribute-patterns")

extern "C" {

void *memcpy(void *target, const void *source, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        static_cast<char *>(target)[i] = static_cast<const char *>(source)[i];
    }
    return target;
}

void *memset(void *target, int value, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        static_cast<char *>(target)[i] = static_cast<char>(value);
    }
    return target;
}

int memcmp(const void *left, const void *right, std::size_t count)
{
    const auto *a = static_cast<const unsigned char *>(left), *b = static_cast<const unsigned char *>(right);
    for (std::size_t i = 0; i < count; ++i) {
        if (a[i] != b[i]) {
            return a[i] - b[i];
        }
    }
    return 0;
}

void *memchr(const void *bytes, int value, std::size_t count)
{
    const auto *place = static_cast<const unsigned char *>(bytes);
    for (; count != 0; --count, ++place) {
        if (*place == static_cast<unsigned char>(value)) {
            return const_cast<unsigned char *>(place);
        }
    }
    return nullptr;
}

std::size_t strlen(const char *text)
{
    std::size_t length = 0;
    while (text[length] != 0) {
        ++length;
    }
    return length;
}

} // extern "C"

namespace std {

[[noreturn]] void __throw_out_of_range_fmt(const char *, ...)
{
    __builtin_trap();
}

} // namespace std
