// A small image for the runner, with the exports of the library and none of its
// code: GetOneGoodXml does what is asked for by the good's id, right or wrong.
#include "pavonix/pavonix.h"
#include "platform/windows/ce/system.h"
#include "probes.h"

namespace {

using pavonix::ce::Probe;

unsigned reasons = 0;

[[gnu::noinline]] int UseStack(int kilobytes)
{
    volatile char bytes[1024];
    bytes[0] = 1;
    return kilobytes > 1 ? UseStack(kilobytes - 1) + bytes[0] : bytes[0];
}

int Answer(Probe probe, int value)
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
        return UseStack(value);
    case Probe::kLoadUnaligned:
        asm volatile("ldr %0, [%1, #1]" : "=r"(word) : "r"(bytes));
        break;
    case Probe::kCountZeros:
        asm volatile(".word 0xE16F0F10" ::: "r0"); // clz r0, r0
        break;
    case Probe::kCallSystem:
        GetTickCount();
        break;
    }
    return word;
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

int GetOneGoodXml(const PavonixChar *, const OneGoodRequest *request, const PavonixChar *, int, const PavonixChar *,
                  int)
{
    return Answer(static_cast<Probe>(request->id), request->type);
}

int GetBuyGood(const PavonixChar *, const BuyGoodRequest *, BuyGoodResult *, const PavonixChar *, int)
{
    return 0;
}

} // extern "C"
