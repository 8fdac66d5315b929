// The options and commands of pavonix-shop.
#pragma once

#include "shop/database/database.h"

#include <CLI/App.hpp>

#include <string>
#include <vector>

namespace shop {

struct Options {
    std::string database = "shop.db";
    std::string host = "127.0.0.1";
    unsigned short port = 8080;
    unsigned threads = 1;
    unsigned connections = 8;
    int keepAliveSeconds = 0;
    std::vector<std::string> watchers;
    int maxSkewSeconds = 300;
    std::string fault;
    bool windowForAll = false;
    std::string serial;
    int userId = 0;
    std::string keyFile;
    Int64 balance = 0;
    Int64 amount = 0;
    bool withPurchases = false;
    bool csv = false;
    std::string goodsFile;
    std::string from;
    std::string to;
};

// Adds options and commands to `app`; both are used while it parses. A command runs
// within the parsing.
void AddCommands(CLI::App &app, Options &options);

} // namespace shop
