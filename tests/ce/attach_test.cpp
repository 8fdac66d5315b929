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
    const AnsweringServer shop(e2e::Announce(5000, e2e::Bytes(5000)));
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
    }
}

} // namespace

} // namespace pavonix::ce
