// coredll.dll: memory and text functions, and the code-page conversions.
#include "coredll.h"
#include "platform/code_pages.h"

#include <cstring>
#include <string>

namespace pavonix::ce {

namespace {

void *Memcpy(void *to, const void *from, std::uint32_t count) { return std::memcpy(to, from, count); }
void *Memmove(void *to, const void *from, std::uint32_t count) { return std::memmove(to, from, count); }
void *Memset(void *bytes, int value, std::uint32_t count) { return std::memset(bytes, value, count); }
int Memcmp(const void *a, const void *b, std::uint32_t count) { return std::memcmp(a, b, count); }
const void *Memchr(const void *bytes, int value, std::uint32_t count) { return std::memchr(bytes, value, count); }

std::uint32_t Strlen(const char *text) { return std::strlen(text); }
int Strcmp(const char *a, const char *b) { return std::strcmp(a, b); }
int Strncmp(const char *a, const char *b, std::uint32_t count) { return std::strncmp(a, b, count); }
const char *Strstr(const char *text, const char *sought) { return std::strstr(text, sought); }
const char *Strchr(const char *text, int sought) { return std::strchr(text, sought); }
std::uint32_t Wcslen(const WideChar *text) { return std::char_traits<WideChar>::length(text); }

// A negative length means a terminated text, and its terminator is converted too.
template <typename Char> int CountOf(const Char *text, int length)
{
    return length >= 0 ? length : static_cast<int>(std::char_traits<Char>::length(text)) + 1;
}

int WideCharToMultiByte(std::uint32_t codePage, std::uint32_t, const WideChar *text, int length, char *bytes, int room,
                        const char *, int *usedDefault)
{
    if (text == nullptr || length == 0 || room < 0) {
        return FailWith(kErrorInvalidParameter, 0);
    }
    bool lossy = false;
    int written = platform::WideToBytes(codePage, text, CountOf(text, length), bytes, room, &lossy);
    if (usedDefault != nullptr) {
        *usedDefault = lossy;
    }
    return written != 0 ? written : FailWith(kErrorInsufficientBuffer, 0);
}

int MultiByteToWideChar(std::uint32_t codePage, std::uint32_t, const char *bytes, int length, WideChar *text, int room)
{
    if (bytes == nullptr || length == 0 || room < 0) {
        return FailWith(kErrorInvalidParameter, 0);
    }
    int written = platform::BytesToWide(codePage, bytes, CountOf(bytes, length), text, room);
    return written != 0 ? written : FailWith(kErrorInsufficientBuffer, 0);
}

} // namespace

void AddTextImports(std::vector<Import> &table)
{
    table.push_back(Unfailing<&Memcpy>(kCoreDll, "memcpy"));
    table.push_back(Unfailing<&Memmove>(kCoreDll, "memmove"));
    table.push_back(Unfailing<&Memset>(kCoreDll, "memset"));
    table.push_back(Unfailing<&Memcmp>(kCoreDll, "memcmp"));
    table.push_back(Unfailing<&Memchr>(kCoreDll, "memchr"));
    table.push_back(Unfailing<&Strlen>(kCoreDll, "strlen"));
    table.push_back(Unfailing<&Strcmp>(kCoreDll, "strcmp"));
    table.push_back(Unfailing<&Strncmp>(kCoreDll, "strncmp"));
    table.push_back(Unfailing<&Strstr>(kCoreDll, "strstr"));
    table.push_back(Unfailing<&Strchr>(kCoreDll, "strchr"));
    table.push_back(Unfailing<&Wcslen>(kCoreDll, "wcslen"));
    table.push_back(Failing<&WideCharToMultiByte, 0>(kCoreDll, "WideCharToMultiByte"));
    table.push_back(Failing<&MultiByteToWideChar, 0>(kCoreDll, "MultiByteToWideChar"));
}

} // namespace pavonix::ce
