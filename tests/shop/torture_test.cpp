// Every allocation and every platform call of a call fails, once and ever after:
// no crash, nothing left behind, a documented result, and the next call works.
#include "pavonix/pavonix.h"
#include "support/device_profile_file.h"
#include "support/sandbox.h"
#include "support/tap.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

using namespace pavonix;

namespace {

constexpr char kReply[] = "HTTP/1.1 200 OK\r\nContent-Length: 3000\r\n\r\n";

class Torture : public testing::Test {
protected:
    // Fails each fallible call of `call` in turn. `check` gets the result of the
    // faulted run.
    void Run(const std::function<int()> &call, const std::function<void(int result)> &check)
    {
        const tap::Holdings before = HeldAfterADownload();
        const int faults = tap::FailEach([&] {
            const int result = call();
            tap::FailNone();
            check(result);
            ASSERT_EQ(call(), 200) << "the next call";
            ASSERT_TRUE(HeldAfterADownload() == before);
        });
        EXPECT_GT(faults, 100);
    }

    // What the process-wide component holds (key, log) depends on the last call
    // alone, and a purchase's log on its random bytes.
    tap::Holdings HeldAfterADownload()
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
        EXPECT_TRUE(result == 0 || sent("Serial: " + serial) || sent("User-ID: 0")) << "whole, or of no profile at all";
        return result;
    }

    // `request` gets what was sent.
    int Buy(const std::u16string &path, std::string *request)
    {
        tap::ScriptedPeer peer{{"HTTP/1.1 200 OK\r\n\r\n"}, {}, 0};
        tap::UsePeer(&peer);
        const BuyGoodRequest good = {0, 0, 1, 7, 0};
        const int result = GetBuyGood(path.c_str(), &good, nullptr, u"http://shop/buy", 80);
        *request = peer.received;
        return result;
    }

    Sandbox box;
    std::string serial = std::string(300, 's'); // so long that each copy needs memory of its own
    std::u16string profile = box.Write("profile", "User-Agent: U\nUser-Serial: " + serial + "\nUser-Id: 1\n");
};

} // namespace

TEST_F(Torture, OfADownload)
{
    const std::string body = std::string(983, 'a') + std::string(1024, 'b') + std::string(993, 'c');
    const auto check = [&](int result) {
        EXPECT_TRUE(result == 200 || result == 0) << result;
        const std::string stored = box.Read("new/f").value_or("");
        EXPECT_TRUE(body.starts_with(stored)) << "the body, a start of it, or nothing";
        EXPECT_TRUE(result == 200 || stored.empty());
        for (const auto &entry : std::filesystem::directory_iterator(box.root())) {
            const std::string name = entry.path().filename();
            EXPECT_TRUE(name == "profile" || name == "new") << name << ": no file but the target is touched";
        }
    };
    Run([this] { return Download(); }, check);
}

// A request leaves whole or not at all; a token that could not be made is empty.
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
    Run([&] { return Buy(DeviceProfilePath(), &sent); }, check);
    EXPECT_TRUE(tokens > 0 && without > 0);
}

// The process keeps the room of the longest serial that it has read, and only one that
// is longer asks for memory: each fault meets a process that has not read it.
TEST_F(Torture, OfALongerSerialThanEver)
{
    serial = std::string(1000, 's');
    profile = box.Write("profile", "User-Serial: " + serial + "\nUser-Id: 1\n");
    for (const bool buys : {false, true}) {
        int status = 0;
        for (int fault = 1; status == 0; ++fault) {
            const pid_t child = fork();
            if (child == 0) {
                tap::FailNth(fault, false);
                std::string sent;
                const int result = buys ? Buy(profile, &sent) : Download();
                EXPECT_TRUE(!buys || result == 0 || sent.find(serial) != sent.npos || sent.find("ID: 0") != sent.npos);
                std::exit(HasFailure() ? 1 : tap::FaultHappened() ? 0 : 2);
            }
            waitpid(child, &status, 0);
        }
        EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, 2) << "2: the run met no fault any more";
    }
}
