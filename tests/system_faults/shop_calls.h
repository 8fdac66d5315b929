// Calls to a shop on loopback, for tests that inject faults.
#pragma once

#include "harness/loopback_server.h"
#include "support/device_profile_file.h"
#include "support/sandbox.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pavonix/pavonix.h>

#include <string>

namespace pavonix {

class ShopCalls : public testing::Test {
protected:
    ~ShopCalls() override { dlclose(library); }

    template <typename Function>
    Function *Export(Function *, const char *name) const
    {
        return reinterpret_cast<Function *>(dlsym(library, name));
    }

    // Downloads request a body of `size` bytes.
    int List(int size, const std::u16string &path) const
    {
        const GoodListRequest request = {0, 0, 1, 2, 3, 4, size};
        return Export(&GetGoodListXml, "GetGoodListXml")(profile.c_str(), &request, path.c_str(), 1,
                                                         u"http://127.0.0.1/shop", server.port());
    }
    int Good(int size, const std::u16string &path, const std::u16string &host = u"127.0.0.1") const
    {
        const OneGoodRequest request = {0, 0, 1, size};
        return Export(&GetOneGoodXml, "GetOneGoodXml")(profile.c_str(), &request, path.c_str(), 1,
                                                       (u"http://" + host + u"/shop").c_str(), server.port());
    }
    int Buy() const
    {
        const BuyGoodRequest request = {0, 0, 1, 2, 0};
        return Export(&GetBuyGood, "GetBuyGood")(profile.c_str(), &request, nullptr, u"http://127.0.0.1/shop",
                                                 server.port());
    }

    void *library = dlopen(LIBRARY, RTLD_NOW | RTLD_LOCAL);
    const Sandbox box;
    bench::LoopbackServer server;
    const std::u16string profile = DeviceProfilePath(), target = box.Path("target");
};

} // namespace pavonix
