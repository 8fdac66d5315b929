// The platform calls for each way in which a call can end: WSAStartup and WSACleanup, sockets
// opened and closed, files and searches left open.
#include "pavonix/pavonix.h"
#include "support/sandbox.h"
#include "support/tap.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace pavonix;

namespace {

class Pairing : public testing::Test {
protected:
    int Download(const char *target, int force = 1)
    {
        const OneGoodRequest request = {9, 9, 1, 7};
        return GetOneGoodXml(box.Write("profile", "User-Serial: S\n").c_str(), &request, box.Path(target).c_str(),
                             force, u"http://shop/good", 80);
    }

    // The platform calls without text conversions.
    static std::vector<std::string> Steps()
    {
        std::vector<std::string> steps;
        std::copy_if(tap::Calls().begin(), tap::Calls().end(), std::back_inserter(steps), [](const std::string &call) {
            return call.find("ToWide") == std::string::npos && call.find("ToBytes") == std::string::npos;
        });
        return steps;
    }

    Sandbox box;
};

} // namespace

TEST_F(Pairing, OfEveryEndOfADownload)
{
    struct Row {
        const char *name, *failing, *target, *reply;
        int result, starts, cleanups, sockets, closes;
    };
    Download("f"); // creates the lasting state of the process-wide component
    constexpr char kOk[] = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok";
    constexpr char kMissing[] = "HTTP/1.1 404 Not Found\r\n\r\n";
    for (const Row &row : {
             // After a stored body the connection is only reset; its destructor closes it.
             Row{"stored", "", "f", kOk, 200, 1, 1, 1, 1},
             // Both Close and the destructor call WSACleanup.
             {"refused", "", "f", kMissing, 404, 1, 2, 1, 1},
             {"no reply", "", "f", "", 0, 1, 2, 1, 1},
             {"no folder", "", "a/b/f", kOk, 200, 1, 2, 1, 1},
             {"no file", "OpenStream", "f", kOk, 200, 1, 2, 1, 1},
             {"no Winsock", "StartWinsock", "f", kOk, 0, 1, 3, 0, 0},
             {"no socket", "OpenSocket", "f", kOk, 0, 1, 1, 1, 3},
             {"no host", "ResolveHost", "f", kOk, 0, 1, 3, 1, 1},
             {"no connection", "ConnectSocket", "f", kOk, 0, 1, 3, 1, 1},
             {"not sent", "SendSocket", "f", kOk, 0, 1, 2, 1, 1},
             {"no keep-alive", "SetSocketOption", "f", kOk, 200, 1, 1, 1, 1},
             {"not received", "ReceiveSocket", "f", kOk, 0, 1, 2, 1, 1},
             {"not closed", "CloseSocket", "f", kOk, 200, 1, 0, 1, 1},
             {"not closed, refused", "CloseSocket", "f", kMissing, 404, 1, 0, 1, 2},
         }) {
        SCOPED_TRACE(row.name);
        tap::Reset();
        tap::ScriptedPeer peer{{row.reply}, {}, 0};
        tap::UsePeer(&peer);
        if (*row.failing != 0) {
            tap::FailAlways(row.failing);
        }
        const tap::OpenHandles before = tap::Held();
        EXPECT_EQ(Download(row.target), row.result);
        EXPECT_EQ(tap::CountOf("StartWinsock"), row.starts);
        EXPECT_EQ(tap::CountOf("CleanupWinsock"), row.cleanups);
        EXPECT_EQ(tap::CountOf("OpenSocket"), row.sockets);
        EXPECT_EQ(tap::CountOf("CloseSocket"), row.closes);
        EXPECT_TRUE(tap::Held() == before);
        std::filesystem::remove(box.root() / "f");
    }
}

TEST_F(Pairing, AKeptTargetOnlyReleasesWinsock)
{
    box.Write("f", "old");
    box.MakeFolder("folder");
    EXPECT_EQ(Download("f", 0), PAVONIX_KEPT);
    const std::vector<std::string> expected = {"FindFirst", "CleanupWinsock"};
    EXPECT_EQ(Steps(), expected);
    tap::ScriptedPeer peer{{"HTTP/1.1 200 OK\r\n\r\n"}, {}, 0};
    tap::UsePeer(&peer);
    EXPECT_EQ(Download("folder", 0), 200) << "a folder is not kept";
    EXPECT_EQ(tap::CountOf("SetThreadError"), 1);
}

TEST_F(Pairing, StepsOfADownloadInTheirOrder)
{
    box.Write("f", "old");
    tap::ScriptedPeer peer{{"HTTP/1.1 200 OK\r\nContent-Length: 1500\r\n\r\n" + std::string(983, 'a'),
                            std::string(400, 'b'), std::string(300, 'c')},
                           {},
                           0};
    tap::UsePeer(&peer);
    EXPECT_EQ(Download("f"), 200);
    const std::vector<std::string> expected = {"OpenStream",          "ReadStream",
                                               "ReadStream",          "CloseStream", // the profile
                                               "StartWinsock(514)",   "OpenSocket(2,1,6)",
                                               "ResolveHost(shop)",   "ConnectSocket(80)", //
                                               "SendSocket",          "SetSocketOption(65535,8,2000000,4)",
                                               "ReceiveSocket(1024)", //
                                               "FindFirst",           "FindNext",
                                               "FindFirst",           "FindFirst",
                                               "RemoveFile",          "OpenStream", // folder, target
                                               "WriteStream(983)",    "ReceiveSocket(1024)",
                                               "WriteStream(400)",    "ReceiveSocket(1024)",
                                               "WriteStream(300)",    "CloseStream",
                                               "CloseSocket",         "CleanupWinsock"};
    EXPECT_EQ(Steps(), expected);
}

// Bytes that a send or a write does not accept are lost.
TEST_F(Pairing, PartsAreNotSentOrWrittenTwice)
{
    const std::string head = "HTTP/1.1 200 OK\r\nContent-Length: 3000\r\n\r\n";
    tap::ScriptedPeer peer{{head + std::string(983, 'a'), std::string(1024, 'b'), std::string(993, 'c')}, {}, 0};
    peer.takes = 10;
    tap::UsePeer(&peer);
    tap::TheState().writeLimit = 100;
    EXPECT_EQ(Download("f"), 200);
    EXPECT_EQ(peer.received, "GET /good?");
    EXPECT_EQ(tap::CountOf("SendSocket"), 1);
    EXPECT_EQ(box.Read("f"), std::string(100, 'a'));
    EXPECT_EQ(tap::CountOf("WriteStream"), 1) << "no write follows a short one";
    EXPECT_EQ(tap::CountOf("ReceiveSocket"), 3) << "the body is received to its end";
    tap::ScriptedPeer refusesAll{{head}, {}, 0};
    refusesAll.takes = 0;
    tap::UsePeer(&refusesAll);
    EXPECT_EQ(Download("f"), 200) << "the reply decides";
    EXPECT_EQ(refusesAll.received, "");
}

TEST_F(Pairing, RejectsBadArgumentsBeforeAnyTraffic)
{
    const GoodListRequest list = {};
    const OneGoodRequest good = {};
    const BuyGoodRequest buy = {};
    const std::u16string longUrl =
        u"http://h/" + std::u16string(247, u'x'); // 256 with its terminator: too long with a query
    const std::u16string tooLong = longUrl + u"x";
    EXPECT_EQ(GetGoodListXml(u"p", &list, u"t", 1, longUrl.c_str(), 80), 0);
    EXPECT_EQ(GetOneGoodXml(u"p", &good, u"t", 1, tooLong.c_str(), 80), 0);
    EXPECT_EQ(GetBuyGood(u"p", &buy, nullptr, tooLong.c_str(), 80), 0);
    EXPECT_EQ(tap::CountOf("CleanupWinsock"), 3) << "one for each connection object";
    for (const char16_t *url : {u"//h/x", u":8080/x"}) { // shorter than a scheme
        EXPECT_EQ(GetBuyGood(u"p", &buy, nullptr, url, 80), 0);
    }
    EXPECT_EQ(GetGoodListXml(u"p", nullptr, u"t", 1, u"http://h/x", 80), 0);
    EXPECT_EQ(GetOneGoodXml(u"p", nullptr, u"t", 1, u"http://h/x", 80), 0);
    EXPECT_EQ(GetBuyGood(u"p", nullptr, nullptr, u"http://h/x", 80), 0);
    EXPECT_EQ(GetOneGoodXml(u"p", &good, u"t", 1, nullptr, 80), 0);
    EXPECT_EQ(tap::CountOf("StartWinsock"), 0);

    tap::Reset();
    tap::ScriptedPeer peer{{"HTTP/1.1 200 OK\r\n\r\n"}, {}, 0}, refusing{{"HTTP/1.1 403 No\r\n\r\n"}, {}, 0};
    tap::UsePeer(&peer);
    EXPECT_EQ(GetOneGoodXml(nullptr, &good, nullptr, 0, u"http://h/x", 80), 200) << "no profile and no target";
    EXPECT_EQ(tap::CountOf("SendSocket"), 1);
    EXPECT_EQ(tap::CountOf("OpenStream"), 0);
    tap::UsePeer(&refusing);
    EXPECT_EQ(GetBuyGood(nullptr, &buy, nullptr, u"http://h/x", 80), 403) << "without a record";
}
