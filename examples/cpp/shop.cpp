// Stores the ten newest goods of a category and the description of one good, and buys
// that good.
// Usage: shop LIBRARY PROFILE FOLDER URL PORT, for instance
//   shop \shop\PAVONIX.dll \shop\profile \shop http://127.0.0.1/shop 8080
#include "shop_client.h"

#include <stdio.h>
#include <stdlib.h>
#include <wchar.h>

namespace {

struct Text {
    wchar_t units[260];

    Text(const wchar_t *first, const wchar_t *second)
    {
        units[0] = 0;
        wcsncat(units, first, 200);
        wcsncat(units, second, 50);
    }
};

int Visit(ShopClient &shop, const wchar_t *profile, const wchar_t *folder, const wchar_t *url, int port)
{
    const GoodListRequest page = {0, 0, 1, 1, 4, 0, 10}; // type 1, category 1, order 4
    int status = shop.GetList(profile, page, Text(folder, L"\\list.xml").units, true, Text(url, L"/list").units, port);
    wprintf(L"list: %d\n", status);

    const OneGoodRequest good = {0, 0, 1, 7};
    status = shop.GetGood(profile, good, Text(folder, L"\\good.xml").units, false, Text(url, L"/good").units, port);
    wprintf(L"good: %d\n", status);

    static BuyGoodRoomyResult result; // zeros: a call leaves fields that it does not write as they are
    const BuyGoodRequest purchase = {0, 0, 1, 7, 0};
    status = shop.Buy(profile, purchase, &result, Text(url, L"/buy").units, port);
    wprintf(L"buy: %d\n", status);
    if (status == PAVONIX_OK) {
        return 0;
    }
    wprintf(L"code: %d\nmessage:%ls\n", result.errorCode, result.message); // it begins with a blank
    if (result.errorCode == 906) {
        wprintf(L"timestamp:%ls\n", result.serverTimestamp);
    }
    return 1;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    ShopClient shop;
    if (argc != 6 || !shop.Load(argv[1])) {
        wprintf(L"Usage: shop LIBRARY PROFILE FOLDER URL PORT\n");
        return 2;
    }
    return Visit(shop, argv[2], argv[3], argv[4], static_cast<int>(wcstol(argv[5], NULL, 10)));
}
