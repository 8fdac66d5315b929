// The library unloaded and loaded again in one process, and its state between calls.
#include "driver/suite.h"
#include "rows/rows.h"
#include "support/times.h"

#include <gtest/gtest.h>

#include <string>

namespace pavonix::e2e {

namespace {

Scenario RowNamed(const std::string &name)
{
    for (const Scenario &row : AllRows()) {
        if (name == row.name.text) {
            return row;
        }
    }
    ADD_FAILURE() << "no row named " << name;
    return {.name = ""};
}

// A checked build of the caller reports leaks when it ends.
TEST(Reload, ManyTimesWithCallsInBetween)
{
    const Scenario download = RowNamed("body_of_5000_bytes"), purchase = RowNamed("refused_for_the_clock");
    for (int i = 0; i < test::Times(100) && !HasFailure(); ++i) {
        RunScenario(download);
        RunScenario(purchase);
        ReloadLibrary();
    }
}

// A profile without keys leaves the last keys in place, until the library is unloaded.
TEST(Reload, AProfileWithoutKeysSignsWithTheLastKeysUntilTheUnload)
{
    Scenario keyless = RowNamed("empty_keys"), keyed = RowNamed("keys_of_1024_bits");
    RunScenario(keyed);
    keyless.freshLibrary = false;
    keyless.signer = keyed.signer;
    RunScenario(keyless);
    keyless.freshLibrary = true;
    keyless.signer = nullptr;
    RunScenario(keyless);
}

} // namespace

} // namespace pavonix::e2e
