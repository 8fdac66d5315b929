// Loading, calling and unloading in one process, and what the DLL holds meanwhile.
#include "answering_server.h"
#include "device_test.h"
#include "driver/scenario.h"

#include <iostream>

namespace pavonix::ce {

namespace {

class Attach : public DeviceTest {};

TEST_F(Attach, FiftyTimesWithoutGrowth)
{
    const AnsweringServer shop(e2e::Announce(5000, e2e::Bytes(5000))), refusing(kRefusal);
    Counts first;
    for (int i = 0; i < 50; ++i) {
        e2e::ReloadLibrary(); // what is left behind by unloading, the runner tells in the end
        Counts attached = Stats();
        attached.erase("peak");
        if (i == 0) {
            first = attached;
        }
        ASSERT_EQ(first, attached) << "after " << i << " times";
        ASSERT_EQ(200, Call(e2e::Export::kList, shop.port()));
        ASSERT_EQ(200, Call(e2e::Export::kGood, shop.port()));
        ASSERT_EQ(403, Call(e2e::Export::kBuy, refusing.port()));
    }
}

TEST_F(Attach, HeapOfPurchasesStaysSmallAndLevel)
{
    const AnsweringServer refusing(kRefusal);
    e2e::ReloadLibrary();
    Stats();
    ASSERT_EQ(403, Call(e2e::Export::kBuy, refusing.port()));
    const Counts first = Stats();
    std::cout << "heap peak of a purchase: " << first.at("peak") << " bytes" << std::endl;
    EXPECT_GT(first.at("peak"), 1024);
    EXPECT_LE(first.at("peak"), 64 * 1024);
    for (int i = 0; i < 20; ++i) {
        ASSERT_EQ(403, Call(e2e::Export::kBuy, refusing.port()));
        // the log of the last operation stays, and now and then has an entry more
        ASSERT_NEAR(first.at("heap"), Stats().at("heap"), 1024);
    }
}

} // namespace

} // namespace pavonix::ce
