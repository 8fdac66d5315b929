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
    if (pavonix::KeepsTarget(targetPath, force)) {
        return PAVONIX_KEPT;
    }
    pavonix::UrlText url;
    if (request == nullptr || !pavonix::ConvertBaseUrl(baseUrl, &url)) {
        return PAVONIX_FAILED;
    }
    url.Append("?type=").AppendDecimal(request->type);
    url.Append("&category=").AppendDecimal(request->category);
    url.Append("&sort=").AppendDecimal(request->sort);
    url.Append("&start=").AppendDecimal(request->start);
    url.Append("&max=").AppendDecimal(request->max);
    return url.fits() ? pavonix::Download(profilePath, url, targetPath, port) : PAVONIX_FAILED;
}
