// Behaviour that the POSIX port adds to the system's calls; prove_port checks the contract
// itself.
#include "platform/code_pages.h"
#include "platform/sockets.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

using namespace pavonix;

namespace {

std::u16string Wide(std::uint32_t codePage, const std::string &bytes)
{
    std::u16string text(bytes.size(), u'\0');
    const int length = platform::BytesToWide(codePage, bytes.data(), static_cast<int>(bytes.size()), text.data(),
                                             static_cast<int>(text.size()));
    return text.substr(0, static_cast<std::size_t>(length));
}

// A listener on loopback, and signals that interrupt the test's thread during a call.
class InterruptedSockets : public testing::Test {
protected:
    InterruptedSockets()
    {
        struct sigaction counting = {};
        counting.sa_handler = [](int) { ++signals; };
        sigaction(SIGUSR1, &counting, &before_); // without SA_RESTART: calls end with EINTR
        sockaddr_in any = {};
        any.sin_family = AF_INET;
        any.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof any;
        EXPECT_EQ(bind(listener_, reinterpret_cast<sockaddr *>(&any), length), 0);
        getsockname(listener_, reinterpret_cast<sockaddr *>(&any), &length);
        std::memcpy(address_.port, &any.sin_port, sizeof address_.port);
        listen(listener_, 0);
    }
    ~InterruptedSockets() override
    {
        sigaction(SIGUSR1, &before_, nullptr);
        close(listener_);
    }

    // Returns the result of `call`, interrupted by twenty signals before `release` lets it end.
    static int Interrupted(const std::function<int()> &call, const std::function<void()> &release)
    {
        const pthread_t caller = pthread_self();
        signals = 0;
        std::thread other([&] {
            while (signals < 20) {
                pthread_kill(caller, SIGUSR1);
                usleep(1000);
            }
            release();
        });
        const int result = call();
        other.join();
        return result;
    }

    int Connect(platform::Socket socket) const { return platform::ConnectSocket(socket, &address_, sizeof address_); }

    static std::atomic<int> signals;
    int listener_ = socket(AF_INET, SOCK_STREAM, 0);
    platform::SocketAddress address_ = {AF_INET, {}, {127, 0, 0, 1}, {}};
    struct sigaction before_;
};

std::atomic<int> InterruptedSockets::signals;

} // namespace

TEST(PosixCodePages, AcceptInvalidText)
{
    EXPECT_EQ(Wide(platform::kUtf8CodePage, "a\xE2\x82\xAC"), u"a\u20ac");
    EXPECT_EQ(Wide(platform::kUtf8CodePage, "a\xE2\x82"), u"a\uFFFD\uFFFD") << "the text ends inside a character";
    EXPECT_EQ(Wide(platform::kUtf8CodePage, "\xFFz\xC3("), u"\uFFFDz\uFFFD(");
    EXPECT_EQ(Wide(1252, "\x80\x81"), u"\u20ac\x81") << "a byte without a character is a control character";
    bool lossy = true;
    EXPECT_EQ(platform::WideToBytes(1250, u"\u0081", 1, nullptr, 0, &lossy), 1);
    EXPECT_FALSE(lossy) << "also the other way";
    EXPECT_EQ(platform::WideToBytes(platform::kUtf8CodePage, u"a\U0001F600", 2, nullptr, 0, &lossy), 2);
    EXPECT_TRUE(lossy) << "the text ends inside a pair";
    EXPECT_EQ(Wide(28592, "\xA1"), u"\u0104");
    EXPECT_EQ(Wide(20127, "a"), u"a");
    for (const std::uint32_t codePage : {932u, 950u, 1255u, 1258u}) {
        EXPECT_EQ(Wide(codePage, "\xA1z"), u"") << codePage << " is not here as Windows has it";
    }
}

TEST(PosixSockets, NeverUseDescriptor0)
{
    const int input = fcntl(0, F_DUPFD_CLOEXEC, 3);
    close(0);
    const platform::Socket socket = platform::OpenSocket(AF_INET, SOCK_STREAM, 0);
    EXPECT_NE(socket, 0u);
    EXPECT_EQ(fcntl(0, F_GETFD), -1) << "nothing is left at 0";
    EXPECT_EQ(platform::CloseSocket(socket), 0);
    dup2(input, 0);
    close(input);
}

TEST_F(InterruptedSockets, SendGoesOn)
{
    const platform::Socket ours = platform::OpenSocket(AF_INET, SOCK_STREAM, 0);
    ASSERT_EQ(Connect(ours), 0);
    const int theirs = accept(listener_, nullptr, nullptr);
    char bytes[8192] = {};
    while (send(static_cast<int>(ours), bytes, sizeof bytes, MSG_DONTWAIT) > 0) {
    } // until no more fits
    const auto makeRoom = [&] {
        while (recv(theirs, bytes, sizeof bytes, MSG_DONTWAIT) > 0) {
        }
    };
    EXPECT_EQ(Interrupted([&] { return platform::SendSocket(ours, "x", 1); }, makeRoom), 1);
    close(theirs);
    platform::CloseSocket(ours);
}

// The listener's queue is full, so that a connection has to wait.
TEST_F(InterruptedSockets, ConnectReportsTheOutcome)
{
    int theirs = -1;
    const platform::Socket first = platform::OpenSocket(AF_INET, SOCK_STREAM, 0);
    ASSERT_EQ(Connect(first), 0);
    const platform::Socket second = platform::OpenSocket(AF_INET, SOCK_STREAM, 0);
    EXPECT_EQ(Interrupted([&] { return Connect(second); }, [&] { theirs = accept(listener_, nullptr, nullptr); }), 0);
    EXPECT_EQ(platform::SendSocket(second, "x", 1), 1);
    const platform::Socket third = platform::OpenSocket(AF_INET, SOCK_STREAM, 0);
    const auto refuse = [&] { shutdown(listener_, SHUT_RDWR); };
    EXPECT_EQ(Interrupted([&] { return Connect(third); }, refuse), platform::kSocketError);
    EXPECT_EQ(platform::SendSocket(third, "x", 1), platform::kSocketError) << "and no signal ends the process";
    for (const platform::Socket socket : {first, second, third}) {
        platform::CloseSocket(socket);
    }
    close(theirs);
}
