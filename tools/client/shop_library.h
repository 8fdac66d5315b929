// The client library, loaded the way a shop application loads it.
#pragma once

#include <pavonix/pavonix.h>

#include <string>

namespace client {

class ShopLibrary {
public:
    // file: the library; empty for the one beside this program or installed with it,
    // the tracing one if `tracing`. Throws Failure(kLocalFailure) when it cannot be loaded or lacks an
    // export.
    explicit ShopLibrary(const std::string &file, bool tracing = false);
    ~ShopLibrary();
    ShopLibrary(const ShopLibrary &) = delete;
    ShopLibrary &operator=(const ShopLibrary &) = delete;

    decltype(&::GetGoodListXml) getGoodListXml = nullptr;
    decltype(&::GetOneGoodXml) getOneGoodXml = nullptr;
    decltype(&::GetBuyGood) getBuyGood = nullptr;

private:
    void *handle_;
};

} // namespace client
