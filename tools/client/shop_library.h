// The library's three calls. This program contains them, in the tracing build's form.
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
