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
    if (request == nullptr) {
        return PAVONIX_FAILED;
    }
    pavonix::QueryText query;
    query.Append("?type=").AppendDecimal(request->type);
    query.Append("&id=").AppendDecimal(request->id);
    return pavonix::Download({profilePath, targetPath, force, baseUrl, port}, query);
}
