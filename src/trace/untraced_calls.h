// The three ordinary calls under the names that they have in the tracing build.
#pragma once

#include "pavonix/pavonix.h"

extern "C" {

int PAVONIX_CALL UntracedGetGoodListXml(const PavonixChar *profilePath, const GoodListRequest *request,
                                        const PavonixChar *targetPath, int force, const PavonixChar *baseUrl, int port);
int PAVONIX_CALL UntracedGetOneGoodXml(const PavonixChar *profilePath, const OneGoodRequest *request,
                                       const PavonixChar *targetPath, int force, const PavonixChar *baseUrl, int port);
int PAVONIX_CALL UntracedGetBuyGood(const PavonixChar *profilePath, const BuyGoodRequest *request,
                                    BuyGoodResult *result, const PavonixChar *baseUrl, int port);

} // extern "C"
