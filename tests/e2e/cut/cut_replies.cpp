// Every reply of the table, ended by the server at each of its first bytes: what
// is returned, what is stored and what the record holds. The library runs in this
// process, with scripted sockets in front of it.
#include "cut/reply_model.h"
#include "driver/record_bytes.h"
#include "driver/tree.h"
#include "rows/rows.h"
#include "support/sandbox.h"
#include "support/tap.h"

#include <gtest/gtest.h>
#include <pavonix/pavonix.h>

#include <algorithm>
#include <cstring>
#include <iconv.h>
#include <memory>
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
    const ReplyModel reply(receptions);
    const std::size_t wanted = reply.announced == 0 ? reply.behind.size() : reply.announced;
    std::string file = reply.behind.substr(0, wanted);
    for (std::size_t i = 1; i < receptions.size() && file.size() < wanted; ++i) {
        file += receptions[i];
    }
    return file;
}

std::u16string Wide(const std::string &text)
{
    std::string bytes = text.c_str(); // up to the first NUL
    std::u16string units(bytes.size(), u'\0');
    char *from = bytes.data(), *to = reinterpret_cast<char *>(units.data());
    std::size_t left = bytes.size(), room = 2 * units.size();
    const iconv_t conversion = iconv_open("UTF-16LE", "CP1252");
    iconv(conversion, &from, &left, &to, &room);
    iconv_close(conversion);
    return units;
}

// An error value is looked for in all that came with the head, the body too.
Record ExpectedRecord(const ReplyModel &reply)
{
    if (reply.status == PAVONIX_OK) {
        return {};
    }
    const bool announcesLess = reply.announced != 0 && reply.announced < reply.behind.size();
    const std::string body = announcesLess ? reply.behind.substr(0, reply.announced) : reply.behind;
    const std::string text = (reply.head + body).c_str();
    Record record;
    record.errorCode = std::atoi(ReplyModel::Value(text, "X-Error-Code").value_or("0").c_str());
    if (const auto message = ReplyModel::Value(text, "X-Error-Message")) {
        record.message = Wide(*message);
    }
    const auto timestamp = ReplyModel::Value(text, "X-Server-Timestamp");
    if (record.errorCode == 906 && timestamp) {
        record.timestamp = Wide(*timestamp);
    }
    if (record.errorCode == 0) {
        record.body = Wide(body);
    }
    return record;
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
        EXPECT_EQ("", RecordDifference(ExpectedRecord(reply), found));
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
