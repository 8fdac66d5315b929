// Whole calls compared with the same work without the library, on loopback.
#include "bare/buy_with_openssl.h"
#include "bare/curl_transfer.h"
#include "bare/receive_to_file.h"
#include "harness/compare.h"
#include "harness/shop.h"

namespace pavonix::bench {

namespace {

constexpr double kNoSlowerBy5Percent = 1.05;
constexpr double kFasterBy15Percent = 0.85;
constexpr double kNoAim = 0; // a call reads the profile and imports its keys, which the bare exchange does not

Way Download(Shop *shop, std::size_t size, std::function<void()> run)
{
    return {std::move(run), [shop, size] { return shop->TakeTarget(size); }};
}

void LongDownload(benchmark::State &state)
{
    constexpr std::size_t kSize = 200'000'000;
    Shop shop;
    Compare(state, Download(&shop, kSize, [&] { shop.GetGood(kSize); }),
            Download(&shop, kSize, [&] { ReceiveToFile(shop.server.port(), kSize, shop.target()); }),
            kNoSlowerBy5Percent);
}

void ShortDownload(benchmark::State &state)
{
    constexpr std::size_t kSize = 10'000;
    Shop shop;
    const std::string url = shop.server.url() + "?type=1&id=" + std::to_string(kSize);
    Compare(state, Download(&shop, kSize, [&] { shop.GetGood(kSize); }),
            Download(&shop, kSize, [&] { CurlDownload(url, shop.target()); }), kFasterBy15Percent);
}

void BareExchange(benchmark::State &state)
{
    constexpr std::size_t kSize = 10'000;
    Shop shop;
    Compare(state, Download(&shop, kSize, [&] { shop.GetGood(kSize); }),
            Download(&shop, kSize, [&] { ReceiveToFile(shop.server.port(), kSize, shop.target()); }), kNoAim);
}

void Purchase(benchmark::State &state)
{
    Shop shop;
    long status = 0;
    const auto sold = [&] { return status == PAVONIX_OK; };
    Compare(state, {[&] { status = shop.Buy(); }, sold},
            {[&] { status = BuyWithOpenSsl(shop.profile(), shop.server.url()); }, sold}, 0);
}

BENCHMARK(LongDownload)->Name("200 MB download / recv and fwrite")->UseManualTime()->Iterations(41);
BENCHMARK(ShortDownload)->Name("10 KB page / libcurl")->UseManualTime()->Iterations(1000);
BENCHMARK(BareExchange)->Name("10 KB page / recv and fwrite")->UseManualTime()->Iterations(2000);
BENCHMARK(Purchase)->Name("purchase / libcurl and OpenSSL")->UseManualTime()->Iterations(500);

} // namespace

} // namespace pavonix::bench
