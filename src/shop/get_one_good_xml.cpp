#include "pavonix/pavonix.h"
#include "shop/download.h"
#include "shop/export.h"

#include <cstddef>

static_assert(sizeof(OneGoodRequest) == 16 && offsetof(OneGoodRequest, type) == 8 &&
              offsetof(OneGoodRequest, id) == 12);

PAVONIX_EXPORT int PAVONIX_CALL GetOneGoodXml(const PavonixChar *profilePath, const OneGoodRequest *request,
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
    url.Append("&id=").AppendDecimal(request->id);
    return url.fits() ? pavonix::Download(profilePath, url, targetPath, port) : PAVONIX_FAILED;
}
