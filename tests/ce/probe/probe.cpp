// A small image for the runner with the exports of the library but not its code:
// GetOneGoodXml performs the action that the good's id selects, valid or not.
#include "pavonix/pavonix.h"
#include "platform/windows/ce/system.h"
#include "probes.h"

namespace {

using pavonix::ce::Probe;

unsigned reasons = 0;
bool startsInEntry = false;

[[gnu::noinline]] int UseStack(int kilobytes, bool calls)
{
    volatile char bytes[1024];
    bytes[0] = 1;
    if (kilobytes > 1) {
        return UseStack(kilobytes - 1, calls) + bytes[0];
    }
    return calls ? static_cast<int>(GetTickCount() & 1) + bytes[0] : bytes[0];
}

int Perform(Probe probe, int value)
{
    alignas(4) static volatile unsigned char bytes[8];
    int word = 0;
    switch (probe) {
    case Probe::kEntryReasons:
        return static_cast<int>(reasons);
    case Probe::kStackAlignment:
        asm volatile("and %0, sp, #7" : "=r"(word));
        break;
    case Probe::kUseStack:
        return UseStack(value, false);
    case Probe::kLoadUnaligned:
        asm volatile("ldr %0, [%1, #1]" : "=r"(word) : "r"(bytes));
        break;
    case Probe::kLoadHalfUnaligned:
        asm volatile("ldrh %0, [%1, #1]" : "=r"(word) : "r"(bytes));
        break;
    case Probe::kCountZeros:
        asm volatile(".word 0xE16F0F10" ::: "r0"); // clz r0, r0
        break;
    case Probe::kCallSystem:
        GetTickCount();
        break;
    case Probe::kCallKernel:
        asm volatile("mov r7, #20\n\tsvc 0" ::: "r0", "r7"); // to Linux: getpid
        break;
    case Probe::kAddFloats:
        asm volatile(".word 0xEE300A20"); // vadd.f32 s0, s0, s1
        break;
    case Probe::kReadBelowStack:
        asm volatile("str %1, [sp, #-64]" : "=r"(word) : "r"(value));
        GetTickCount();
        asm volatile("ldr %0, [sp, #-64]" : "=r"(word));
        break;
    case Probe::kCallDeep:
        return UseStack(value, true);
    case Probe::kChangeRegister:
        asm volatile("mov r11, #0"); // unknown to the compiler
        break;
    case Probe::kStartInEntry:
        startsInEntry = true;
        break;
    }
    return word;
}

} // namespace

extern "C" {

int _DllMainCRTStartup(void *, unsigned reason, void *)
{
    reasons = reasons << 4 | reason;
    if (startsInEntry) {
        WSADATA data;
        reinterpret_cast<decltype(&WSAStartup)>(GetProcAddressW(GetModuleHandleW(L"ws2.dll"), L"WSAStartup"))(2, &data);
    }
    return 1;
}

int GetGoodListXml(const PavonixChar *, const GoodListRequest *, const PavonixChar *, int, const PavonixChar *, int)
{
    return 0;
}

int GetOneGoodXml(const PavonixChar *, const OneGoodRequest *request, const PavonixChar *, int, const PavonixChar *,
                  int)
{
    return Perform(static_cast<Probe>(request->id), request->type);
}

int GetBuyGood(const PavonixChar *, const BuyGoodRequest *, BuyGoodResult *, const PavonixChar *, int)
{
    return 0;
}

} // extern "C"
