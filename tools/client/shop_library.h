// The library's three calls; the tracing library is linked into this program.
#pragma once

#include "trace/untraced_calls.h"

namespace client {

struct ShopLibrary {
    // tracing: whether the calls write a trace.
    explicit ShopLibrary(bool tracing = false)
        : getGoodListXml(tracing ? ::GetGoodListXml : ::UntracedGetGoodListXml),
          getOneGoodXml(tracing ? ::GetOneGoodXml : ::UntracedGetOneGoodXml),
          getBuyGood(tracing ? ::GetBuyGood : ::UntracedGetBuyGood)
    {
    }

    decltype(&::GetGoodListXml) getGoodListXml;
    decltype(&::GetOneGoodXml) getOneGoodXml;
    decltype(&::GetBuyGood) getBuyGood;
};

} // namespace client
