#include "shop_library.h"

#include "system.h"

namespace client {

namespace {

template <class Function>
void Find(void *library, const char *name, Function *function)
{
    *function = reinterpret_cast<Function>(FindExport(library, name));
}

} // namespace

ShopLibrary::ShopLibrary(const std::string &file, bool tracing)
    : handle_(OpenLibrary(file.empty() ? FindShopLibrary(tracing) : file))
{
    Find(handle_, "GetGoodListXml", &getGoodListXml);
    Find(handle_, "GetOneGoodXml", &getOneGoodXml);
    Find(handle_, "GetBuyGood", &getBuyGood);
}

ShopLibrary::~ShopLibrary()
{
    CloseLibrary(handle_);
}

} // namespace client
