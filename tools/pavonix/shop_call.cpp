#include "shop_call.h"

#include "wide_text.h"

#include <CLI/CLI.hpp>

#include <fstream>
#include <iostream>
#include <regex>

namespace client {

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
    std::smatch match;
    if (port) {
        return *port;
    }
    return std::regex_search(url, match, std::regex("^(?:http://)?[^/:]*:(\\d{1,5})(?:/|$)")) ? std::stoi(match[1])
                                                                                              : 80;
}

ExitCode ExplainFailure(int status)
{
    if (status == PAVONIX_FAILED) {
        std::cout << "no reply (0): the host is unknown, nobody listens on the port, the connection was lost before a\n"
                     "status came, or the URL cannot be used (http://host/path, well under 200 characters)\n";
        return ExitCode::kNoReply;
    }
    const char *meaning = "which is no status that refuses or grants anything";
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
