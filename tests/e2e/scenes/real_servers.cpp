// Downloads from servers that no part of the tests scripts.
#include "driver/service.h"
#include "driver/suite.h"
#include "driver/tree.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace pavonix::e2e {

namespace {

class RealServers : public testing::Test {
protected:
    // Has the library store the list's page of this URL, and returns the file.
    std::string Download(const std::string &url)
    {
        WriteFile(Path("profile.txt"), kIdentity);
        const Flavour flavour = TheSuite().flavour;
        const std::optional<Answer> answer = MakeCall({.profile = LibraryPath(flavour, Path("profile.txt")),
                                                       .words = {0, 0, 1, 0, 0, 0, 5},
                                                       .target = LibraryPath(flavour, Path("stored")),
                                                       .url = std::u16string(url.begin(), url.end()),
                                                       .port = port_});
        EXPECT_TRUE(answer && answer->result == 200) << "result " << (answer ? answer->result : -1);
        return ReadFile(Path("stored"));
    }

    std::string Path(const std::string &name) const { return folder_.path() + "/" + name; }

    const RowFolder folder_{TheSuite().scratch};
    const int port_ = FreePort();
};

// nginx in one process, that puts a head and the first of its body into one segment.
std::string NginxSettings(int port, const std::string &folder)
{
    return "daemon off; master_process off; error_log stderr; pid " + folder +
           "/nginx.pid;\n"
           "events {}\n"
           "http {\n"
           "  access_log off; sendfile on; tcp_nopush on;\n"
           "  client_body_temp_path " +
           folder + "/t1; proxy_temp_path " + folder + "/t2; fastcgi_temp_path " + folder + "/t3;\n  uwsgi_temp_path " +
           folder + "/t4; scgi_temp_path " + folder + "/t5;\n  server { listen 127.0.0.1:" + std::to_string(port) +
           "; root " + folder + "/www; }\n}\n";
}

TEST_F(RealServers, NginxServesAFileOf20Megabytes)
{
    const std::string content = Bytes(20'000'000);
    std::filesystem::create_directory(Path("www"));
    WriteFile(Path("www/goods.xml"), content);
    WriteFile(Path("nginx.conf"), NginxSettings(port_, folder_.path()));
    const Service nginx({"/usr/sbin/nginx", "-p", folder_.path(), "-c", Path("nginx.conf")}, port_, Path("log"));
    ASSERT_TRUE(nginx.IsUp()) << ReadFile(Path("log"));

    EXPECT_EQ("", Differences({{"stored", content}}, {{"stored", Download("http://127.0.0.1/goods.xml")}}));
}

TEST_F(RealServers, CurlGetsTheSamePageFromTheSampleShop)
{
    const Service shop({TheSuite().shopServer, "--port", std::to_string(port_), "--db", Path("shop.db")}, port_,
                       Path("log"));
    ASSERT_TRUE(shop.IsUp()) << ReadFile(Path("log"));

    const std::string stored = Download("http://127.0.0.1/shop/list");
    const std::string url =
        "http://127.0.0.1:" + std::to_string(port_) + "/shop/list?type=1&category=0&sort=0&start=0&max=5";
    ASSERT_EQ(
        0, std::system(("curl --silent --show-error --fail --output '" + Path("curled") + "' '" + url + "'").c_str()));
    EXPECT_EQ(ReadFile(Path("curled")), stored);
    EXPECT_NE(std::string::npos, stored.find("</goods>")) << stored;
}

} // namespace

} // namespace pavonix::e2e
