#include "rows.h"

namespace pavonix::e2e {

std::vector<Scenario> AllRows()
{
    std::vector<Scenario> rows;
    for (const auto &group :
         {RequestRows(), ProfileRows(), ReplyRows(), BodyRows(), TargetRows(), FailureRows(), PurchaseRows()}) {
        rows.insert(rows.end(), group.begin(), group.end());
    }
    return rows;
}

} // namespace pavonix::e2e
