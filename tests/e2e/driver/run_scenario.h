#pragma once

#include "scenario.h"

namespace pavonix::e2e {

// Plays one row with the suite's caller and checks all its expectations.
void RunScenario(const Scenario &row);

} // namespace pavonix::e2e
