#include <pavonix/pavonix.h>
#include <stdio.h>

int main(void)
{
    BuyGoodRequest good = {0, 0, 1, 7, 0}; /* type 1, id 7, not if it is owned already */
    static BuyGoodRoomyResult verdict;     /* zeros: a call leaves what it does not write */
    int status = GetBuyGood(L"sample.profile", &good, PAVONIX_RESULT(&verdict), L"http://127.0.0.1/shop/buy", 8080);
    printf("%s (%d), code %d\n", status == PAVONIX_OK ? "bought" : "not bought", status, verdict.errorCode);
    return status == PAVONIX_OK ? 0 : 1;
}
