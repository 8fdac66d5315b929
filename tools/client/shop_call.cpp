#include "shop_call.h"

#include "wide_text.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <fstream>
#include <iostream>

namespace client {

namespace {

constexpr int kDefaultPort = 80;

} // namespace

void ShopCall::AddOptions(CLI::App &command)
{
    command.add_option("--url", url, "The shop's address for this call, http://host/path without a query")->required();
    command.add_option("--port", port, "TCP port to connect to; without it the one in the URL, or 80")
        ->check(CLI::Range(1, 65535));
    command.add_option("--profile", profile, "The device profile file")->required();
    command.add_option("--library", library, "The library to load; without it libpavonix.so beside this program");
}

std::u16string ShopCall::WideProfile() const
{
    if (!std::ifstream(profile)) {
        std::cerr << "warning: " << profile << " cannot be read, the request goes out without an identity\n";
    }
    return ToWidePath(profile);
}

int ShopCall::Port() const
{
    if (port) {
        return *port;
    }
    const std::size_t scheme = url.find("//");
    const std::size_t host = scheme == std::string::npos ? 0 : scheme + 2;
    const std::size_t end = std::min(url.find('/', host), url.size());
    const std::size_t colon = std::min(url.find(':', host), end);
    int inUrl = kDefaultPort;
    std::from_chars(url.data() + std::min(colon + 1, end), url.data() + end, inUrl);
    return inUrl;
}

ExitCode ExplainFailure(int status)
{
    if (status == PAVONIX_FAILED) {
        std::cout << "no reply (0): the host is unknown, nobody listens on the port, the connection was lost before a\n"
                     "status came, or the URL cannot be used (http://host/path, well under 200 characters)\n";
        return ExitCode::kNoReply;
    }
    const char *meaning = "not a status that a shop answers with";
    if (status >= 300 && status < 400) {
        meaning = "not modified or moved; the library follows no redirection";
    } else if (status >= 400 && status < 500) {
        meaning = "the server refuses the request";
    } else if (status >= 500 && status < 600) {
        meaning = "the server failed";
    }
    std::cout << "status " << status << ": " << meaning << '\n';
    return ExitCode::kRefused;
}

} // namespace client
