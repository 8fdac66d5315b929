// Every reply of the table, ended by the server at each of its first bytes: what
// is returned, what is stored and what the record holds. The library runs in this
// process, with scripted sockets in front of it.
#include "driver/record_bytes.h"
#include "driver/tree.h"
#include "model/reply_model.h"
#include "rows/rows.h"
#include "support/sandbox.h"
#include "support/tap.h"

#include <gtest/gtest.h>
#include <pavonix/pavonix.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <numeric>
#include <set>

namespace pavonix::e2e {

void PrintTo(const Scenario &row, std::ostream *output)
{
    *output << row.name.text << " at " << row.name.place.file_name() << ":" << row.name.place.line();
}

namespace {

constexpr std::size_t kDeepestCut = 1100;

std::string ExpectedFile(const Receptions &receptions)
{
    const Receptions writes = BodyWrites(receptions);
    return std::accumulate(writes.begin(), writes.end(), std::string());
}

class CutReplies : public testing::TestWithParam<Scenario> {
protected:
    // Runs `check` for each cut, and sees to it that no call keeps anything.
    template <typename Check>
    void ForEachCut(const Check &check)
    {
        std::size_t size = 0;
        for (const std::string &piece : GetParam().pieces) {
            size += piece.size();
        }
        check(Receptions()); // the first call sets up what lasts
        const tap::Holdings held = tap::Held();
        for (std::size_t cut = 0; cut <= std::min(size, kDeepestCut) && !HasFailure(); ++cut) {
            SCOPED_TRACE("cut at " + std::to_string(cut));
            check(CutAt(cut, GetParam().pieces));
            EXPECT_TRUE(tap::Held() == held);
        }
    }

    template <typename Call>
    static int AnsweredBy(const Receptions &receptions, const Call &call)
    {
        tap::ScriptedPeer peer = {receptions};
        tap::Reset();
        tap::UsePeer(&peer);
        const int result = call();
        tap::UsePeer(nullptr);
        return result;
    }

    static constexpr char16_t kUrl[] = u"http://127.0.0.1/x";
};

using CutDownloads = CutReplies;

TEST_P(CutDownloads, StoreWhatArrived)
{
    const Sandbox sandbox;
    const std::u16string target = sandbox.Path("list.xml");
    ForEachCut([&](const Receptions &receptions) {
        sandbox.Write("list.xml", "old");
        const GoodListRequest request = {};
        const int result =
            AnsweredBy(receptions, [&] { return GetGoodListXml(u"", &request, target.c_str(), 1, kUrl, 80); });
        EXPECT_EQ(ReplyModel(receptions).status, result);
        const Tree expected = {{"list.xml", result == PAVONIX_OK ? ExpectedFile(receptions) : "old"}};
        EXPECT_EQ("", Differences(expected, ReadTree(sandbox.root())));
    });
}

using CutPurchases = CutReplies;

TEST_P(CutPurchases, ReportWhatArrived)
{
    ForEachCut([&](const Receptions &receptions) {
        const BuyGoodRequest request = {};
        const auto record = std::make_unique<BuyGoodRoomyResult>();
        std::memset(record.get(), kUntouchedByte, sizeof *record);
        const int result = AnsweredBy(receptions, [&] {
            return GetBuyGood(u"", &request, reinterpret_cast<BuyGoodResult *>(record.get()), kUrl, 80);
        });
        const ReplyModel reply(receptions);
        EXPECT_EQ(reply.status, result);
        const std::string found(reinterpret_cast<const char *>(record.get()), sizeof *record);
        EXPECT_EQ("", RecordDifference(reply.Verdict(), found));
    });
}

std::vector<Scenario> Downloads()
{
    std::vector<Scenario> rows = ReplyRows();
    for (const Scenario &row : BodyRows()) {
        rows.push_back(row);
    }
    return rows;
}

std::vector<Scenario> Purchases()
{
    std::vector<Scenario> rows;
    std::set<std::vector<std::string>> seen = {{}};
    for (const Scenario &row : PurchaseRows()) {
        if (seen.insert(row.pieces).second) {
            rows.push_back(row);
        }
    }
    return rows;
}

std::string RowName(const testing::TestParamInfo<Scenario> &row)
{
    return row.param.name.text;
}

INSTANTIATE_TEST_SUITE_P(Table, CutDownloads, testing::ValuesIn(Downloads()), RowName);
INSTANTIATE_TEST_SUITE_P(Table, CutPurchases, testing::ValuesIn(Purchases()), RowName);

} // namespace

} // namespace pavonix::e2e
