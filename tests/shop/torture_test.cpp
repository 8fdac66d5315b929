// Each allocation and each platform call of a call fails, once and from then on: no crash, no
// leak, a documented result, and the next call works.
#include "pavonix/pavonix.h"
#include "profile/process_state.h"
#include "support/device_profile_file.h"
#include "support/sandbox.h"
#include "support/tap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>

using namespace pavonix;

namespace {

constexpr char kReply[] = "HTTP/1.1 200 OK\r\nContent-Length: 3000\r\n\r\n";

class Torture : public testing::Test {
protected:
    // Fails each fallible call of `call` in turn. `check` receives the result of the run with
    // the fault.
    void Run(const std::function<int()> &call, const std::function<void(int result)> &check)
    {
        const tap::OpenHandles before = HeldAfterADownload();
        const int faults = tap::FailEach([&] {
            const int result = call();
            tap::FailNone();
            check(result);
            ASSERT_EQ(call(), 200) << "the next call";
            ASSERT_TRUE(HeldAfterADownload() == before);
        });
        EXPECT_GT(faults, 100);
    }

    // The memory of the process-wide component (key, log) depends on the last call, and a
    // purchase's log on its random bytes.
    tap::OpenHandles HeldAfterADownload()
    {
        EXPECT_EQ(Download(), 200);
        return tap::Held();
    }

    int Download()
    {
        std::filesystem::remove_all(box.root() / "new");
        tap::ScriptedPeer peer{{kReply + std::string(983, 'a'), std::string(1024, 'b'), std::string(993, 'c')}, {}, 0};
        tap::UsePeer(&peer);
        const OneGoodRequest request = {0, 0, 1, 7};
        const int result =
            GetOneGoodXml(profile.c_str(), &request, box.Path("new/f").c_str(), 1, u"http://shop/good", 80);
        const auto sent = [&](const std::string &text) { return peer.received.find(text) != std::string::npos; };
        EXPECT_TRUE(result == 0 || sent("Serial: " + serial) || sent("User-ID: 0"))
            << "the whole profile, or none of it";
        return result;
    }

    // `request` receives the sent bytes.
    int Buy(std::string *request)
    {
        tap::ScriptedPeer peer{{"HTTP/1.1 200 OK\r\n\r\n"}, {}, 0};
        tap::UsePeer(&peer);
        const BuyGoodRequest good = {0, 0, 1, 7, 0};
        const int result = GetBuyGood(DeviceProfilePath().c_str(), &good, nullptr, u"http://shop/buy", 80);
        *request = peer.received;
        return result;
    }

    Sandbox box;
    const std::string serial = std::string(300, 's'); // so long that each copy allocates
    std::u16string profile = box.Write("profile", "User-Agent: U\nUser-Serial: " + serial + "\nUser-Id: 1\n");
};

} // namespace

TEST_F(Torture, OfADownload)
{
    const std::string body = std::string(983, 'a') + std::string(1024, 'b') + std::string(993, 'c');
    const auto check = [&](int result) {
        EXPECT_TRUE(result == 200 || result == 0) << result;
        const std::string stored = box.Read("new/f").value_or("");
        EXPECT_TRUE(body.starts_with(stored)) << "the body, a prefix of it, or nothing";
        EXPECT_TRUE(result == 200 || stored.empty());
        for (const auto &entry : std::filesystem::directory_iterator(box.root())) {
            const std::string name = entry.path().filename();
            EXPECT_TRUE(name == "profile" || name == "new") << name << ": no file but the target is touched";
        }
    };
    Run([this] { return Download(); }, check);
}

// A request is sent whole or not at all; a token that could not be made is empty.
TEST_F(Torture, OfAPurchase)
{
    std::string sent;
    int tokens = 0, without = 0;
    const auto check = [&](int result) {
        EXPECT_TRUE(result == 200 || result == 0) << result;
        if (result == 200) {
            EXPECT_TRUE(sent.ends_with("Content-Length: 19\r\n\r\ntype=1&id=7&force=0\r\n")) << sent;
            const std::size_t start = sent.find("User-Cert: ") + 11;
            const std::size_t length = sent.find("\r\n", start) - start;
            EXPECT_TRUE(length == 172 || length == 0) << "128 bytes in base64, or nothing: " << length;
            tokens += length == 172;
            without += length == 0;
        }
    };
    Run([&] { return Buy(&sent); }, check);
    EXPECT_TRUE(tokens > 0 && without > 0);
}

// Texts so long that each copy allocates. The process keeps the buffer of the longest serial
// that it has read, so each run starts with a new profile.
TEST_F(Torture, OfLongerTextsThanEver)
{
    const std::string host(230, 'h'), agent(300, 'u'), longest(650, 's'); // a profile that one read returns
    profile = box.Write("profile", "User-Agent: " + agent + "\nUser-Serial: " + longest + "\nUser-Id: 1\n");
    const std::u16string url = u"http://" + std::u16string(host.begin(), host.end()) + u"/x";
    const OneGoodRequest good = {0, 0, 1, 7};
    const BuyGoodRequest bought = {0, 0, 1, 7, 0};
    const std::string start = " HTTP/1.1\r\nHost: " + host + "\r\nAccept: */*\r\nUser-Agent: " + agent +
                              "\r\nConnection: Keep-Alive\r\n",
                      identity = "User-Serial: " + longest + "\r\nUser-ID: 1\r\n";
    const std::string whole[] = {"GET /x?type=1&id=7" + start + identity + "\r\n",
                                 "POST /x" + start + "Content-Type: application/x-www-form-urlencoded\r\n" + identity +
                                     "User-Cert: \r\nContent-Length: 19\r\n\r\ntype=1&id=7&force=0\r\n"};
    for (const bool buys : {false, true}) {
        tap::FailEach([&] {
            std::destroy_at(&Profile());
            std::construct_at(&Profile());
            tap::ScriptedPeer peer{{"HTTP/1.1 200 OK\r\n\r\n"}, {}, 0};
            tap::UsePeer(&peer);
            buys ? GetBuyGood(profile.c_str(), &bought, nullptr, url.c_str(), 80)
                 : GetOneGoodXml(profile.c_str(), &good, nullptr, 1, url.c_str(), 80);
            std::string &sent = peer.received;
            if (const std::size_t token = sent.find("User-Cert: ") + 11; token > 11) { // made with another test's key
                sent.erase(token, sent.find("\r\n", token) - token);
            }
            EXPECT_TRUE(sent.empty() || sent == whole[buys] || sent.find("User-ID: 0") != sent.npos)
                << sent << "instead of\n"
                << whole[buys];
            EXPECT_EQ(tap::CountOf("ResolveHost"), std::ranges::count(tap::Calls(), "ResolveHost(" + host + ")"));
        });
    }
}
