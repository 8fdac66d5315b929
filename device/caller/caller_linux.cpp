// caller LIBRARY: makes calls into libpavonix.so on command.
#include "caller/call_loop.h"

#include <dlfcn.h>

#include <iostream>
#include <string>

namespace {

using pavonix::device::ShopExports;

class SharedObjectLoader : public pavonix::device::LibraryLoader {
public:
    explicit SharedObjectLoader(const char *path) : path_(path) {}

    bool Load(ShopExports *exports) override
    {
        library_ = dlopen(path_.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (library_ != nullptr && Find("GetGoodListXml", &exports->getGoodListXml) &&
            Find("GetOneGoodXml", &exports->getOneGoodXml) && Find("GetBuyGood", &exports->getBuyGood)) {
            return true;
        }
        std::cerr << dlerror() << std::endl;
        return false;
    }

    void Unload() override { dlclose(library_); }

private:
    template <typename Function>
    bool Find(const char *name, Function *function)
    {
        *function = reinterpret_cast<Function>(dlsym(library_, name));
        return *function != nullptr;
    }

    std::string path_;
    void *library_ = nullptr;
};

} // namespace

int main(int count, char **arguments)
{
    if (count != 2) {
        std::cerr << "usage: caller LIBRARY" << std::endl;
        return 2;
    }
    SharedObjectLoader loader(arguments[1]);
    return pavonix::device::RunCallLoop(loader);
}
