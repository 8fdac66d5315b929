// The flow that both catalogue downloads share.
#pragma once

#include "platform/wide_char.h"
#include "shop/shop_call.h"

namespace pavonix {

using QueryText = FixedText<128>; // "?name=number&..." of at most five numbers

// What both exported calls are given besides their request; any text may be null.
struct DownloadCall {
    const WideChar *profilePath;
    const WideChar *targetPath;
    int force;
    const WideChar *baseUrl;
    int port;
};

// Keeps or downloads the target; answers what the exported call returns: 1, 0,
// 200, or the reply's status.
int Download(const DownloadCall &call, const QueryText &query);

} // namespace pavonix
