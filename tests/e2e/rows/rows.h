// The table of scenarios, one file per group of rows.
#pragma once

#include "driver/scenario.h"

#include <vector>

namespace pavonix::e2e {

std::vector<Scenario> RequestRows();
std::vector<Scenario> ProfileRows();
std::vector<Scenario> ReplyRows();
std::vector<Scenario> BodyRows();
std::vector<Scenario> TargetRows();
std::vector<Scenario> FailureRows();
std::vector<Scenario> PurchaseRows();

std::vector<Scenario> AllRows();

} // namespace pavonix::e2e
