// Examines whether a server is compatible with the devices.
#pragma once

#include "doctor/device_request.h"
#include "doctor/diagnosis.h"
#include "progress_line.h"
#include "shop_library.h"
#include "wire/plain_exchange.h"
#include "wire/segments.h"

#include <chrono>
#include <optional>
#include <string>
#include <utility>

namespace client {

struct Examination {
    std::string url; // of a download, without query
    int port = 0;
    std::string buyUrl;
    int buyPort = 0;
    GoodListRequest list{};
    std::optional<OneGoodRequest> good;     // downloaded instead of the list
    std::string profile;                    // if empty, no purchases are tried
    std::optional<std::pair<int, int>> buy; // type and id of a good to buy
    int tries = 10;
    std::chrono::milliseconds patience{10000}; // limit of each connection and each exchange
    bool showProgress = false;
};

// Downloads over plain sockets, tries purchases, then downloads through the library. A
// StopRequest ends it between two steps.
class Doctor {
public:
    explicit Doctor(const Examination &examination) : examination_(examination), progress_(examination.showProgress) {}

    [[nodiscard]] const Diagnosis &Examine();
    // Whether a purchase was accepted.
    bool hasBought() const { return hasBought_; }

private:
    [[nodiscard]] bool FindServer();
    [[nodiscard]] bool TryDownloads();
    [[nodiscard]] bool TryDownload(const std::string &request);
    void ShowDownload(const diagnostics::Exchange &exchange);

    const Examination &examination_;
    ProgressLine progress_;
    Identity identity_;
    Address address_{};
    ArrivalTimes times_;
    diagnostics::Exchange last_;
    std::chrono::milliseconds slowest_{0};
    int seen_ = 0;  // downloads whose first packet could be identified
    int blind_ = 0; // the others
    bool hasBought_ = false;
    Diagnosis diagnosis_;
};

// The host in a URL.
[[nodiscard]] std::string HostIn(const std::string &url);

} // namespace client
