// The heap that a call uses.
#include "harness/heap.h"
#include "harness/shop.h"
#include "harness/table.h"

#include <cstdio>
#include <cstdlib>

namespace pavonix::bench {

namespace {

constexpr std::size_t kLimit = 65'536;
constexpr std::size_t kShort = 1'000'000;
constexpr std::size_t kLong = 200'000'000;

std::string KiB(std::size_t bytes)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.1f KiB", static_cast<double>(bytes) / 1024);
    return text;
}

void Print(const char *name, std::size_t ours, std::size_t theirs)
{
    PrintRow({.name = name,
              .ours = KiB(ours),
              .theirs = KiB(theirs),
              .ratio = static_cast<double>(ours) / static_cast<double>(theirs),
              .aim = 1});
}

void Expect(bool done)
{
    if (!done) {
        std::fprintf(stderr, "a call failed\n");
        std::exit(1);
    }
}

// The largest heap of a call, after an equal one, because the component keeps its key
// and its last log between calls.
std::size_t DownloadPeak(Shop *shop, std::size_t size)
{
    Expect(shop->GetGood(kShort) == PAVONIX_OK);
    const std::size_t peak = HeapPeak([&] { Expect(shop->GetGood(size) == PAVONIX_OK); });
    Expect(shop->TakeTarget(size));
    return peak;
}

std::size_t PurchasePeak(Shop *shop)
{
    Expect(shop->Buy() == PAVONIX_OK);
    return HeapPeak([&] { Expect(shop->Buy() == PAVONIX_OK); });
}

} // namespace

} // namespace pavonix::bench

int main() // NOLINT(bugprone-exception-escape): the run-time library reports an uncaught exception
{
    using namespace pavonix::bench;
    Shop shop;
    const std::size_t shortPeak = DownloadPeak(&shop, kShort);
    Print("heap of a 1 MB download / 64 KiB", shortPeak, kLimit);
    Print("heap of a 200 MB download / of 1 MB", DownloadPeak(&shop, kLong), shortPeak);
    Print("heap of a purchase / 64 KiB", PurchasePeak(&shop), kLimit);
    return 0;
}
