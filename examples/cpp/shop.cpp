// Stores the ten newest goods of a category and the description of one good, and buys
// that good. On the device the report is a message box, as few handhelds have a console.
// Usage: shop LIBRARY PROFILE FOLDER URL PORT, for instance
//   shop \shop\PAVONIX.dll \shop\sample.profile \shop http://192.0.2.1/shop 8080
#include "shop_client.h"

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <wchar.h>

namespace {

wchar_t report[4096];

void Report(const wchar_t *format, ...)
{
    wchar_t line[1400]; // the longest text of a purchase has 1024 units
    va_list values;
    va_start(values, format);
    const int length = _vsnwprintf(line, 1399, format, values);
    va_end(values);
    line[length < 0 ? 1399 : length] = 0;
    wcsncat(report, line, 4095 - wcslen(report));
}

int Show(int exitCode)
{
#ifdef UNDER_CE
    MessageBoxW(NULL, report, L"Pavonix", MB_OK);
#else
    wprintf(L"%ls", report);
#endif
    return exitCode;
}

struct Text {
    wchar_t units[260];

    Text(const wchar_t *first, const wchar_t *second)
    {
        units[0] = 0;
        wcsncat(units, first, 200);
        wcsncat(units, second, 50);
    }
};

bool ReportDownload(const wchar_t *call, int status, const wchar_t *file, const char *closingTag)
{
    const bool isComplete = ShopClient::IsComplete(file, closingTag);
    if (status == PAVONIX_OK || status == PAVONIX_KEPT) {
        Report(L"%ls: %d, %ls is %ls\n", call, status, file, isComplete ? L"complete" : L"missing or incomplete");
        return isComplete;
    }
    Report(L"%ls: %d, nothing was stored\n", call, status);
    return false;
}

bool Buy(ShopClient &shop, const wchar_t *profile, const wchar_t *url, int port)
{
    static BuyGoodRoomyResult result; // zeros: a call leaves fields that it does not write as they are
    const BuyGoodRequest purchase = {0, 0, 1, 7, 0};
    const int status = shop.Buy(profile, purchase, &result, Text(url, L"/buy").units, port);
    if (status == PAVONIX_OK) {
        Report(L"buy: 200, bought\n");
        return true;
    }
    Report(L"buy: %d, code %d:%ls\n", status, result.errorCode, result.message); // it begins with a space
    if (result.errorCode == 906) {
        Report(L"the server's time:%ls\n", result.serverTimestamp);
    }
    return false;
}

int Visit(ShopClient &shop, const wchar_t *profile, const wchar_t *folder, const wchar_t *url, int port)
{
    const Text list(folder, L"\\list.xml"), good(folder, L"\\good.xml");
    const GoodListRequest page = {0, 0, 1, 1, 4, 0, 10}; // type 1, category 1, order 4
    int status = shop.GetList(profile, page, list.units, true, Text(url, L"/list").units, port);
    const bool hasList = ReportDownload(L"list", status, list.units, "</goods>");

    const OneGoodRequest seventh = {0, 0, 1, 7};
    status = shop.GetGood(profile, seventh, good.units, false, Text(url, L"/good").units, port);
    const bool hasGood = ReportDownload(L"good", status, good.units, "</good>");
    return Buy(shop, profile, url, port) && hasList && hasGood ? 0 : 1;
}

int ReportUnloadable(const wchar_t *library, DWORD error)
{
    if (error == ERROR_BAD_EXE_FORMAT) {
        Report(L"%ls is not for a program of %d bits: take the one of the other folder\n", library,
               static_cast<int>(8 * sizeof(void *)));
    } else if (error == ERROR_MOD_NOT_FOUND) {
        Report(L"%ls was not found\n", library);
    } else {
        Report(L"%ls cannot be loaded: error %lu\n", library, error);
    }
    return Show(3);
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    if (argc != 6) {
        Report(L"Usage: shop LIBRARY PROFILE FOLDER URL PORT\n");
        return Show(2);
    }
    ShopClient shop;
    if (!shop.Load(argv[1])) {
        return ReportUnloadable(argv[1], GetLastError());
    }
    return Show(Visit(shop, argv[2], argv[3], argv[4], static_cast<int>(wcstol(argv[5], NULL, 10))));
}
