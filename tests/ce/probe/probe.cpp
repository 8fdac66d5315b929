// A small image for the runner, with the exports of the library and none of its
// code: GetOneGoodXml makes the system call whose number is the good's id. So a test
// sees how the system answers, and what becomes of an image that does wrong.
#include "pavonix/pavonix.h"
#include "platform/windows/ce/system.h"
#include "probes.h"

#include <cstdlib>

extern "C" DWORD GetLastError();

namespace {

using pavonix::ce::Probe;

constexpr UINT kAnsi = 0, kUtf8 = 65001;

unsigned reasons = 0;

// The error of a call that failed, 0 for one that did not.
int ErrorUnless(bool succeeded)
{
    return succeeded ? 0 : static_cast<int>(GetLastError());
}

[[gnu::noinline]] int UseStack(int kilobytes)
{
    volatile char bytes[1024];
    bytes[0] = 1;
    return kilobytes > 1 ? UseStack(kilobytes - 1) + bytes[0] : bytes[0];
}

int Acquire(int row)
{
    constexpr wchar_t kBase[] = L"Microsoft Base Cryptographic Provider v1.0";
    constexpr DWORD kVerify = 0xF0000000;
    struct Row {
        const wchar_t *name;
        DWORD type, flags;
    };
    const Row rows[] = {
        {kBase, 1, kVerify}, {nullptr, 1, kVerify},   {L"Microsoft Base Cryptographic Provider", 1, kVerify},
        {kBase, 2, kVerify}, {kBase, 1, kVerify | 1}, {kBase, 1, 8}};
    HCRYPTPROV provider = 0;
    const bool acquired =
        CryptAcquireContextW(&provider, nullptr, rows[row].name, rows[row].type, rows[row].flags) != 0;
    if (acquired) {
        CryptReleaseContext(provider, 0);
    }
    return ErrorUnless(acquired);
}

int ByteOf(int value)
{
    const auto unit = static_cast<wchar_t>(value);
    unsigned char bytes[2] = {};
    const int count =
        WideCharToMultiByte(kAnsi, 0, &unit, 1, reinterpret_cast<char *>(bytes), sizeof bytes, nullptr, nullptr);
    return count == 2 ? bytes[0] << 8 | bytes[1] : bytes[0];
}

int CharacterOf(int value)
{
    const char bytes[2] = {static_cast<char>(value >> 8), static_cast<char>(value)};
    const int count = value > 0xFF ? 2 : 1;
    wchar_t unit = 0;
    MultiByteToWideChar(kAnsi, 0, bytes + 2 - count, count, &unit, 1);
    return unit;
}

int AskOfUtf8()
{
    char byte;
    BOOL lossy;
    return ErrorUnless(WideCharToMultiByte(kUtf8, 0, L"a", 1, &byte, 1, nullptr, &lossy) != 0);
}

int CountMatches(const wchar_t *pattern)
{
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(pattern, &found);
    if (search == INVALID_HANDLE_VALUE) {
        return 0;
    }
    int count = 1;
    while (FindNextFileW(search, &found)) {
        ++count;
    }
    FindClose(search);
    return count;
}

int AttributesOf(const wchar_t *path)
{
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(path, &found);
    return search != INVALID_HANDLE_VALUE && FindClose(search) ? static_cast<int>(found.dwFileAttributes) : -1;
}

int Open(const wchar_t *path, const wchar_t *mode, bool deletes)
{
    std::FILE *stream = _wfopen(path, mode);
    const int error = ErrorUnless(stream != nullptr && !(deletes && !DeleteFileW(path)));
    if (stream != nullptr) {
        std::fclose(stream);
    }
    return error;
}

int Answer(Probe probe, int value, const wchar_t *path)
{
    alignas(4) static volatile unsigned char bytes[8];
    char byte;
    wchar_t unit;
    unsigned word;
    switch (probe) {
    case Probe::kEntryReasons:
        return static_cast<int>(reasons);
    case Probe::kGetError:
        return static_cast<int>(GetLastError());
    case Probe::kSetError:
        SetLastError(static_cast<DWORD>(value));
        return 0;
    case Probe::kStackAlignment:
        asm volatile("and %0, sp, #7" : "=r"(word));
        return static_cast<int>(word);
    case Probe::kUseStack:
        return UseStack(value);
    case Probe::kLoadUnaligned:
        asm volatile("ldr %0, [%1, #1]" : "=r"(word) : "r"(bytes));
        return static_cast<int>(word);
    case Probe::kCountZeros:
        asm volatile(".word 0xE16F0F10" ::: "r0"); // clz r0, r0
        return 0;
    case Probe::kReallocToNothing:
        return std::realloc(std::malloc(8), 0) == nullptr;
    case Probe::kAcquire:
        return Acquire(value);
    case Probe::kRefuseLookAlikes:
        return ErrorUnless(WideCharToMultiByte(kAnsi, 0x400, L"a", 1, &byte, 1, nullptr, nullptr) != 0);
    case Probe::kAskOfUtf8:
        return AskOfUtf8();
    case Probe::kComposeUtf8:
        return ErrorUnless(MultiByteToWideChar(kUtf8, 1, "a", 1, &unit, 1) != 0);
    case Probe::kByteOf:
        return ByteOf(value);
    case Probe::kCharacterOf:
        return CharacterOf(value);
    case Probe::kAttributesOf:
        return AttributesOf(path);
    case Probe::kCountMatches:
        return CountMatches(path);
    case Probe::kAppendTo:
        return Open(path, L"ab", false);
    case Probe::kDelete:
        return ErrorUnless(DeleteFileW(path) != 0);
    case Probe::kDeleteOpen:
        return Open(path, L"rb", true);
    case Probe::kMakeFolder:
        return ErrorUnless(CreateDirectoryW(path, nullptr) != 0);
    }
    return -1;
}

} // namespace

extern "C" {

int _DllMainCRTStartup(void *, unsigned reason, void *)
{
    reasons = reasons << 4 | reason;
    return 1;
}

int GetGoodListXml(const PavonixChar *, const GoodListRequest *, const PavonixChar *, int, const PavonixChar *, int)
{
    return 0;
}

int GetOneGoodXml(const PavonixChar *, const OneGoodRequest *request, const PavonixChar *path, int, const PavonixChar *,
                  int)
{
    return Answer(static_cast<Probe>(request->id), request->type, path);
}

int GetBuyGood(const PavonixChar *, const BuyGoodRequest *, BuyGoodResult *, const PavonixChar *, int)
{
    return 0;
}

} // extern "C"
