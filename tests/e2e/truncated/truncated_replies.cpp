// Every reply of the table, cut off by the server at each of its first bytes: the result,
// the stored file and the record. The library runs in this process with scripted sockets.
#include "truncated/played_call.h"
#include "model/drawn_call.h"
#include "model/reply_model.h"
#include "rows/rows.h"
#include "support/tap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <set>

namespace pavonix::e2e {

void PrintTo(const Scenario &row, std::ostream *output)
{
    *output << row.name.text << " at " << row.name.place.file_name() << ":" << row.name.place.line();
}

namespace {

constexpr std::size_t kDeepestCut = 1100;

class CutReplies : public testing::TestWithParam<Scenario> {};

// Without a profile, because importing its keys would take most of the time.
TEST_P(CutReplies, MatchTheModel)
{
    Scenario call = GetParam();
    call.profile = std::nullopt;
    Play(call); // the first call creates the lasting state
    const tap::OpenHandles held = tap::Held();
    const std::vector<std::string> &pieces = GetParam().pieces;
    const std::size_t size = std::accumulate(pieces.begin(), pieces.end(), std::string()).size();
    for (std::size_t cut = 0; cut <= std::min(size, kDeepestCut) && !HasFailure(); ++cut) {
        SCOPED_TRACE("cut at " + std::to_string(cut));
        call.pieces = CutAt(cut, pieces);
        PredictOutcome(&call);
        const Outcome outcome = Play(call);
        call.request = outcome.request; // its token is empty
        EXPECT_EQ("", Difference(call, outcome));
        EXPECT_TRUE(tap::Held() == held);
    }
}

std::vector<Scenario> Rows()
{
    std::vector<Scenario> rows;
    std::set<std::vector<std::string>> seen = {{}};
    for (const auto &table : {ReplyRows(), BodyRows(), PurchaseRows()}) {
        std::copy_if(table.begin(), table.end(), std::back_inserter(rows),
                     [&](const Scenario &row) { return seen.insert(row.pieces).second; });
    }
    return rows;
}

std::string RowName(const testing::TestParamInfo<Scenario> &row)
{
    return row.param.name.text;
}

INSTANTIATE_TEST_SUITE_P(Table, CutReplies, testing::ValuesIn(Rows()), RowName);

} // namespace

} // namespace pavonix::e2e
