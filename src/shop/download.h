// The flow that both catalogue downloads share.
#pragma once

#include "platform/wide_char.h"
#include "shop/shop_call.h"

namespace pavonix {

// One download. `url` is the whole request URL; `targetPath` may be null, which
// is a path that cannot be prepared. Answers what the exported call returns: 0,
// 200, or the reply's status.
int Download(const WideChar *profilePath, const UrlText &url, const WideChar *targetPath, int port);

// Whether a call with this force has nothing to do because the target exists.
bool KeepsTarget(const WideChar *targetPath, int force);

} // namespace pavonix
