// An application that uses Winsock itself. Failed calls through the example's client must
// not end its Winsock.
//   own_winsock LIBRARY      exit code 0, or the step at which Winsock was lost
#include "shop_client.h"

namespace {

bool HasWinsock()
{
    const SOCKET made = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    return made != INVALID_SOCKET && closesocket(made) == 0;
}

} // namespace

int wmain(int, wchar_t **arguments)
{
    WSADATA data;
    ShopClient shop;
    if (WSAStartup(MAKEWORD(2, 2), &data) != 0 || !shop.Load(arguments[1])) {
        return 1;
    }
    const OneGoodRequest good = {0, 0, 1, 7};
    const BuyGoodRequest purchase = {0, 0, 1, 7, 0};
    BuyGoodRoomyResult result = {};
    const wchar_t *const nobody = L"http://127.0.0.1/shop";
    for (int round = 2; round < 5; ++round) {
        if (shop.GetGood(L"profile", good, L"good.xml", true, nobody, 9) != 0 ||
            shop.GetGood(L"profile", good, arguments[1], false, nobody, 9) != PAVONIX_KEPT ||
            shop.Buy(L"profile", purchase, &result, nobody, 9) != 0 || !HasWinsock()) {
            return round;
        }
    }
    return 0;
}
