#include "pavonix/pavonix.h"
#include "shop/export.h"

#include <cstddef>

static_assert(sizeof(BuyGoodRequest) == 20 && offsetof(BuyGoodRequest, type) == 8 &&
              offsetof(BuyGoodRequest, id) == 12 && offsetof(BuyGoodRequest, force) == 16);
static_assert(offsetof(BuyGoodResult, errorCode) == 8 && offsetof(BuyGoodResult, message) == 12 &&
              offsetof(BuyGoodResult, serverTimestamp) == 524);
static_assert(offsetof(BuyGoodRoomyResult, message) == 12 && offsetof(BuyGoodRoomyResult, serverTimestamp) == 524);

// Purchases need the token, which needs the RSA engine: until then, no call.
PAVONIX_EXPORT int PAVONIX_CALL GetBuyGood(const PavonixChar *, const BuyGoodRequest *, BuyGoodResult *,
                                           const PavonixChar *, int)
{
    return PAVONIX_FAILED;
}
