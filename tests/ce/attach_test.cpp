// Loading, calls and unloading in one process, and the resources that the DLL holds.
#include "device_test.h"
#include "driver/scenario.h"
#include "support/times.h"

#include <iostream>

namespace pavonix::ce {

namespace {

class Attach : public DeviceTest {};

const std::string kGoods = e2e::Announce(5000, e2e::Bytes(5000));

TEST_F(Attach, AndCallsWithoutGrowth)
{
    Counts first;
    for (int i = 0; i < test::Times(50); ++i) {
        e2e::ReloadLibrary(); // the runner reports leaks when it ends
        Counts attached = Stats();
        attached.erase("peak");
        if (i == 0) {
            first = attached;
        }
        ASSERT_EQ(first, attached) << "after " << i << " times";
        ASSERT_EQ(403, Call(e2e::Export::kBuy, kRefusal));
    }
    const Counts once = Stats();
    std::cout << "heap peak of a purchase: " << once.at("peak") << " bytes" << std::endl;
    EXPECT_GT(once.at("peak"), 1024);
    EXPECT_LE(once.at("peak"), 64 * 1024);
    for (int i = 0; i < test::Times(20); ++i) {
        ASSERT_EQ(200, Call(e2e::Export::kList, kGoods));
        ASSERT_EQ(200, Call(e2e::Export::kGood, kGoods));
        ASSERT_EQ(403, Call(e2e::Export::kBuy, kRefusal));
        // the log of the last operation stays and sometimes has one more entry
        ASSERT_NEAR(once.at("heap"), Stats().at("heap"), 1024);
    }
}

} // namespace

} // namespace pavonix::ce
