// The commands "list" and "good".
#pragma once

#include "shop_call.h"

#include <string>

namespace client {

struct Download {
    ShopCall call;
    std::string target; // the file to store
    bool force = false;
    GoodListRequest list{}; // for DownloadList
    OneGoodRequest good{};  // for DownloadGood
};

ExitCode DownloadList(const Download &download);
ExitCode DownloadGood(const Download &download);

} // namespace client
