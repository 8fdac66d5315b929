#include "http/http_connection.h"
#include "support/tap.h"

#include <gtest/gtest.h>

#include <string>

using namespace pavonix;

namespace {

std::string Text(const ZtString &text)
{
    return std::string(text.c_str(), static_cast<std::size_t>(text.length()));
}

} // namespace

TEST(Connection, ComposesTheRequestInItsOrder)
{
    HttpConnection connection;
    const std::string bare =
        "GET  HTTP/1.1\r\nHost: host\r\nAccept: */*\r\n"
        "User-Agent: Mozilla/4.0 (compatible; MSIE 6.0; Windows NT 5.1; SV1; .NET CLR 2.0.50727; InfoPath.2; "
        ".NET CLR 3.0.4506.2152; .NET CLR 3.5.30729)\r\nConnection: Keep-Alive\r\n\r\n";
    EXPECT_EQ(Text(connection.BuildRequest("GET", SplitUrl("http://host/"), 0)), bare);

    connection.SetUserAgent(ZtString("U"));
    connection.AddHeader("A", "1");
    connection.AddHeader(nullptr, "no");
    connection.AddHeader("no", nullptr);
    connection.AddHeader("B", " 2 ");
    connection.AddHeader("A", "1");
    connection.AddFormField("type", "1");
    connection.AddFormField("no", nullptr);
    connection.AddFormField(nullptr, "no");
    connection.AddFormField("id", "a b&c");
    EXPECT_EQ(Text(connection.GetFormBody()), "type=1&id=a+b%26c");
    EXPECT_EQ(
        Text(connection.ComposeRequest("POST", SplitUrl("host:8080/x"), ZtString("100-199"), connection.GetFormBody())),
        "POST /x HTTP/1.1\r\nHost: host:8080\r\nAccept: */*\r\nUser-Agent: U\r\nConnection: Keep-Alive\r\n"
        "Content-Type: application/x-www-form-urlencoded\r\nA: 1\r\nB:  2 \r\nA: 1\r\n"
        "Range: bytes=100-199\r\n\r\ntype=1&id=a+b%26c\r\n");

    connection.Reset();
    EXPECT_EQ(Text(connection.BuildRequest("GET", SplitUrl("http://host/"), 0)), bare) << "like a new connection";
    EXPECT_FALSE(SplitUrl("http:///x").valid) << "a resolver may take an empty name for this machine";
}

TEST(Connection, CopiesTheFirstReception)
{
    tap::ScriptedPeer peer{{"HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello"}, {}, 0};
    tap::UsePeer(&peer);
    HttpConnection connection;
    ZtByteData reply;
    EXPECT_EQ(connection.Get("http://host:99/x", &reply, 80), 1);
    EXPECT_STREQ(connection.GetHeadBuffer(), "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello");
    EXPECT_EQ(reply.length(), 5u + 2u) << "Content-Length bytes and two zeros";
    char buffer[4];
    EXPECT_EQ(connection.Receive(buffer, 4), -1) << "the peer has closed";
    peer = {{"HTTP/1.1 200 OK\r\nContent-Length: 5000\r\n\r\n" + std::string(2000, 'b')}, {}, 0};
    EXPECT_EQ(HttpConnection().Get("http://host/x", &reply, 80), 1);
    EXPECT_EQ(reply.length(), 1024u + 2u) << "the first reception at most";
}

TEST(Connection, BalancesWinsockCalls)
{
    tap::ScriptedPeer peer;
    tap::UsePeer(&peer);
    {
        HttpConnection idle;
        EXPECT_EQ(idle.Close(), 1);
        EXPECT_EQ(tap::CountOf("CleanupWinsock"), 1) << "also without a socket";
        EXPECT_EQ(tap::CountOf("CloseSocket"), 0);
    }
    EXPECT_EQ(tap::CountOf("CleanupWinsock"), 2) << "also by the destructor";
    {
        HttpConnection connection;
        EXPECT_EQ(connection.Connect(nullptr, 80), 0);
        EXPECT_EQ(connection.StartSocket(), 1);
        EXPECT_EQ(connection.Connect("host", 80), 1);
        tap::FailAlways("CloseSocket");
        EXPECT_EQ(connection.Close(), 0);
        EXPECT_TRUE(connection.connected());
        EXPECT_NE(connection.socket(), 0u);
    }
    EXPECT_EQ(tap::CountOf("CleanupWinsock"), 2) << "a socket that cannot be closed keeps Winsock";

    tap::Reset();
    tap::TheState().winsockVersion = 0x0001;
    HttpConnection old;
    EXPECT_EQ(old.StartSocket(), 0);
    EXPECT_EQ(tap::CountOf("CleanupWinsock"), 1);
    EXPECT_EQ(tap::CountOf("OpenSocket"), 0);
}
