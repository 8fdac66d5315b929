// The library unloaded and loaded again in one process, with work in between.
#include "driver/run_scenario.h"
#include "driver/suite.h"
#include "rows/rows.h"

#include <gtest/gtest.h>

namespace pavonix::e2e {

namespace {

// A checked build of the caller reports at its end what any of the loads has lost.
TEST(Reload, AHundredTimesWithCallsInBetween)
{
    const Scenario download = BodyRows().back();
    for (int i = 0; i < 100 && !HasFailure(); ++i) {
        RunScenario(download);
        ReloadLibrary();
    }
}

} // namespace

} // namespace pavonix::e2e
