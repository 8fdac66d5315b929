// coredll.dll: memory and text functions, and the code-page conversions.
#include "device_options.h"
#include "system/coredll.h"
#include "system/open_handles.h"
#include "platform/code_pages.h"

#include <cstring>
#include <string>

namespace pavonix::device {

namespace {

// Named with their types, to choose among the C++ library's overloads.
constexpr void *(*kMemmove)(void *, const void *, std::size_t) = std::memmove;
constexpr void *(*kMemset)(void *, int, std::size_t) = std::memset;
constexpr int (*kMemcmp)(const void *, const void *, std::size_t) = std::memcmp;
constexpr const void *(*kMemchr)(const void *, int, std::size_t) = std::memchr;
constexpr std::size_t (*kStrlen)(const char *) = std::strlen;
constexpr int (*kStrcmp)(const char *, const char *) = std::strcmp;
constexpr int (*kStrncmp)(const char *, const char *, std::size_t) = std::strncmp;
constexpr const char *(*kStrstr)(const char *, const char *) = std::strstr;
constexpr const char *(*kStrchr)(const char *, int) = std::strchr;

// The compiler copies objects onto themselves, which every memcpy supports.
void *Memcpy(void *to, const void *from, std::uint32_t size)
{
    const auto target = reinterpret_cast<std::uintptr_t>(to), source = reinterpret_cast<std::uintptr_t>(from);
    if (target != source && target < source + size && source < target + size) {
        Fatal("memcpy of bytes that overlap");
    }
    return std::memcpy(to, from, size);
}

// A negative length means a terminated text, and its terminator is converted too.
template <typename Char>
int CountOf(const Char *text, int length)
{
    return length >= 0 ? length : static_cast<int>(std::char_traits<Char>::length(text)) + 1;
}

constexpr std::uint32_t kKnownFlagsToBytes = 0x270; // composite characters; there is no way to refuse look-alikes
constexpr std::uint32_t kKnownFlagsToWide = 0x0F;

bool IsMissing(std::uint32_t codePage)
{
    return deviceOptions.missing.count(codePage == platform::kUtf8CodePage ? "utf-8" : std::to_string(codePage)) != 0;
}

// A conversion from or to UTF-8 accepts no flags and no replacement.
bool IsKnown(std::uint32_t codePage, std::uint32_t flags, std::uint32_t known)
{
    return (flags & ~(codePage == platform::kUtf8CodePage ? 0 : known)) == 0;
}

int WideCharToMultiByte(std::uint32_t codePage, std::uint32_t flags, const WideChar *text, int length, char *bytes,
                        int room, const char *replacement, int *usedDefault)
{
    if (!IsKnown(codePage, flags, kKnownFlagsToBytes)) {
        return FailWith(kErrorInvalidFlags, 0);
    }
    const bool asks = replacement != nullptr || usedDefault != nullptr;
    if (IsMissing(codePage) || text == nullptr || length == 0 || room < 0 ||
        (asks && codePage == platform::kUtf8CodePage)) {
        return FailWith(kErrorInvalidParameter, 0);
    }
    bool lossy = false;
    int written = platform::WideToBytes(codePage, text, CountOf(text, length), bytes, room, &lossy);
    if (usedDefault != nullptr) {
        *usedDefault = lossy;
    }
    return written != 0 ? written : FailWith(kErrorInsufficientBuffer, 0);
}

int MultiByteToWideChar(std::uint32_t codePage, std::uint32_t flags, const char *bytes, int length, WideChar *text,
                        int room)
{
    if (!IsKnown(codePage, flags, kKnownFlagsToWide)) {
        return FailWith(kErrorInvalidFlags, 0);
    }
    if (IsMissing(codePage) || bytes == nullptr || length == 0 || room < 0) {
        return FailWith(kErrorInvalidParameter, 0);
    }
    int written = platform::BytesToWide(codePage, bytes, CountOf(bytes, length), text, room);
    return written != 0 ? written : FailWith(kErrorInsufficientBuffer, 0);
}

} // namespace

void AddTextImports(std::vector<Import> &table)
{
    table.push_back(Unfailing<&Memcpy>(kCoreDll, "memcpy"));
    table.push_back(Unfailing<kMemmove>(kCoreDll, "memmove"));
    table.push_back(Unfailing<kMemset>(kCoreDll, "memset"));
    table.push_back(Unfailing<kMemcmp>(kCoreDll, "memcmp"));
    table.push_back(Unfailing<kMemchr>(kCoreDll, "memchr"));
    table.push_back(Unfailing<kStrlen>(kCoreDll, "strlen"));
    table.push_back(Unfailing<kStrcmp>(kCoreDll, "strcmp"));
    table.push_back(Unfailing<kStrncmp>(kCoreDll, "strncmp"));
    table.push_back(Unfailing<kStrstr>(kCoreDll, "strstr"));
    table.push_back(Unfailing<kStrchr>(kCoreDll, "strchr"));
    table.push_back(Failing<&WideCharToMultiByte, 0>(kCoreDll, "WideCharToMultiByte"));
    table.push_back(Failing<&MultiByteToWideChar, 0>(kCoreDll, "MultiByteToWideChar"));
}

} // namespace pavonix::device
