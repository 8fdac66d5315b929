// How much of the heap a call holds.
#include "harness/heap.h"
#include "harness/shop.h"
#include "harness/table.h"

#include <cstdio>
#include <cstdlib>

namespace pavonix::bench {

namespace {

constexpr std::size_t kLimit = 64 * 1024;

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

std::size_t DownloadPeak(Shop *shop, std::size_t size)
{
    const std::size_t peak = HeapPeak([&] { Expect(shop->GetGood(size) == PAVONIX_OK); });
    Expect(shop->TakeTarget(size));
    return peak;
}

std::size_t PurchasePeak(Shop *shop)
{
    return HeapPeak([&] { Expect(shop->Buy() == PAVONIX_OK); });
}

} // namespace

} // namespace pavonix::bench

int main()
{
    using namespace pavonix::bench;
    Shop shop;
    PurchasePeak(&shop); // what the C library sets up once in a process does not belong to a call
    const std::size_t shortPeak = DownloadPeak(&shop, 1'000'000);
    Print("heap of a 1 MB download / 64 KiB", shortPeak, kLimit);
    Print("heap of a 200 MB download / of 1 MB", DownloadPeak(&shop, 200'000'000), shortPeak);
    Print("heap of a purchase / 64 KiB", PurchasePeak(&shop), kLimit);
    return 0;
}
