// Every download reply of the table, ended by the server at each of its first
// bytes: what is returned and what is stored, by a second reading of the rules.
// The library runs in this process, with scripted sockets in front of it.
#include "driver/tree.h"
#include "rows/rows.h"
#include "support/sandbox.h"
#include "support/tap.h"

#include <gtest/gtest.h>
#include <pavonix/pavonix.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace pavonix::e2e {

namespace {

constexpr std::size_t kReception = 1024;
constexpr std::size_t kDeepestCut = 1100;

using Receptions = std::vector<std::string>;

// What each receive of the library brings when the server closes after `cut` bytes.
Receptions CutAt(std::size_t cut, const std::vector<std::string> &pieces)
{
    Receptions receptions;
    for (const std::string &piece : pieces) {
        const std::string sent = piece.substr(0, cut);
        cut -= sent.size();
        for (std::size_t i = 0; i < sent.size(); i += kReception) {
            receptions.push_back(sent.substr(i, kReception));
        }
    }
    return receptions;
}

// The announced length; 0 when there is none to be found.
std::uint32_t AnnouncedLength(const std::string &head)
{
    const std::size_t name = head.find("Content-Length"), colon = head.find(':', name), end = head.find("\r\n", name);
    if (name == std::string::npos || colon > end) {
        return 0;
    }
    const long long value = std::strtoll(head.c_str() + colon + 1, nullptr, 10);
    return static_cast<std::uint32_t>(std::clamp(value, -2147483648LL, 2147483647LL));
}

struct Outcome {
    int result = 0;
    std::string file; // what is stored, for the result 200
};

Outcome Expected(const Receptions &receptions)
{
    std::string area = receptions.empty() ? "" : receptions[0];
    const std::size_t blankLine = area.find("\r\n\r\n");
    const std::string head = area.substr(0, blankLine == std::string::npos ? 0 : blankLine + 4);
    const std::size_t blank = head.find(' ');
    if (blank == std::string::npos) {
        return {};
    }
    Outcome outcome = {std::atoi(head.substr(blank + 1, 3).c_str()), ""};
    area.resize(kReception, '\0');
    const std::size_t held = kReception - head.size();
    const std::size_t announced = AnnouncedLength(head), wanted = announced == 0 ? held : announced;
    outcome.file = area.substr(head.size(), std::min(held, wanted));
    for (std::size_t i = 1; i < receptions.size() && outcome.file.size() < wanted; ++i) {
        outcome.file += receptions[i];
    }
    return outcome;
}

class CutDownloads : public testing::TestWithParam<Scenario> {
protected:
    int Call(const Receptions &receptions)
    {
        tap::ScriptedPeer peer = {receptions};
        tap::Reset();
        tap::UsePeer(&peer);
        std::u16string target;
        for (const char c : file_) {
            target += c == '/' ? u'\\' : static_cast<char16_t>(c);
        }
        const GoodListRequest request = {};
        const int result = GetGoodListXml(u"", &request, target.c_str(), 1, u"http://127.0.0.1/goods", 80);
        tap::UsePeer(nullptr);
        return result;
    }

    RowFolder folder_{TemporaryRoot()};
    std::string file_ = folder_.path() + "/list.xml";
};

TEST_P(CutDownloads, GiveWhatArrived)
{
    std::size_t size = 0;
    for (const std::string &piece : GetParam().pieces) {
        size += piece.size();
    }
    Call({}); // the process-wide component now holds what every such call leaves in it
    const tap::Holdings before = tap::Held();
    for (std::size_t cut = 0; cut <= std::min(size, kDeepestCut); ++cut) {
        WriteFile(file_, "old");
        const Receptions receptions = CutAt(cut, GetParam().pieces);
        const Outcome expected = Expected(receptions);
        ASSERT_EQ(expected.result, Call(receptions)) << "cut at " << cut;
        const Tree files = {{"list.xml", expected.result == PAVONIX_OK ? expected.file : "old"}};
        ASSERT_EQ("", Differences(files, ReadTree(folder_.path()))) << "cut at " << cut;
        ASSERT_TRUE(tap::Held() == before) << "cut at " << cut;
    }
}

std::vector<Scenario> Replies()
{
    std::vector<Scenario> rows = ReplyRows();
    for (const Scenario &row : BodyRows()) {
        rows.push_back(row);
    }
    return rows;
}

INSTANTIATE_TEST_SUITE_P(Table, CutDownloads, testing::ValuesIn(Replies()),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace

} // namespace pavonix::e2e
