// The words of pavonix-shop's command line, and what each does.
#pragma once

#include <CLI/App.hpp>

#include <cstdint>
#include <string>

namespace shop {

struct Options {
    std::string database = "shop.db";
    std::string host = "127.0.0.1";
    unsigned short port = 8080;
    int maxSkewSeconds = 300;
    std::string fault;
    bool windowForAll = false;
    std::string serial;
    int userId = 0;
    std::string keyFile;
    std::int64_t balance = 0;
    std::int64_t amount = 0;
    bool withPurchases = false;
    bool csv = false;
    std::string goodsFile;
};

// Adds options and commands to `app`; both are used while it parses. A command runs
// within the parsing.
void AddCommands(CLI::App &app, Options &options);

} // namespace shop
