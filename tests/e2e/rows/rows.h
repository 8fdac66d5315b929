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

inline std::vector<Scenario> AllRows()
{
    std::vector<Scenario> rows;
    for (const auto &group :
         {RequestRows(), ProfileRows(), ReplyRows(), BodyRows(), TargetRows(), FailureRows(), PurchaseRows()}) {
        rows.insert(rows.end(), group.begin(), group.end());
    }
    return rows;
}

} // namespace pavonix::e2e
