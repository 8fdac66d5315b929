#include "pavonix/pavonix.h"
#include "shop/download.h"
#include "shop/export.h"

#include <cstddef>

static_assert(sizeof(GoodListRequest) == 28 && offsetof(GoodListRequest, type) == 8 &&
              offsetof(GoodListRequest, category) == 12 && offsetof(GoodListRequest, sort) == 16 &&
              offsetof(GoodListRequest, start) == 20 && offsetof(GoodListRequest, max) == 24);

PAVONIX_EXPORT int PAVONIX_CALL GetGoodListXml(const PavonixChar *profilePath, const GoodListRequest *request,
                                               const PavonixChar *targetPath, int force, const PavonixChar *baseUrl,
                                               int port)
{
    if (request == nullptr) {
        return PAVONIX_FAILED;
    }
    pavonix::QueryText query;
    query.Append("?type=").AppendDecimal(request->type);
    query.Append("&category=").AppendDecimal(request->category);
    query.Append("&sort=").AppendDecimal(request->sort);
    query.Append("&start=").AppendDecimal(request->start);
    query.Append("&max=").AppendDecimal(request->max);
    return pavonix::Download({profilePath, targetPath, force, baseUrl, port}, query);
}
