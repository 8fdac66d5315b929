// Examines a server: is it compatible with these devices?
#pragma once

#include "doctor/device_request.h"
#include "doctor/diagnosis.h"
#include "doctor/steps.h"
#include "shop_library.h"
#include "wire/plain_exchange.h"
#include "wire/segments.h"

#include <chrono>
#include <optional>
#include <string>
#include <utility>

namespace client {

struct Examination {
    std::string url; // of a download, without its query
    int port = 0;
    std::string buyUrl;
    int buyPort = 0;
    GoodListRequest list{};
    std::optional<OneGoodRequest> good;     // requested instead of the list
    std::string profile;                    // empty: no purchases
    std::optional<std::pair<int, int>> buy; // type and id of a good to buy
    int tries = 10;
    std::chrono::milliseconds patience{10000}; // for each connection and each exchange
    bool showSteps = false;
};

// Downloads over plain sockets, tries purchases, and then downloads through the
// library. Every wait ends after `patience`; a StopRequest ends it between steps.
class Doctor {
public:
    explicit Doctor(const Examination &examination) : examination_(examination), steps_(examination.showSteps) {}

    [[nodiscard]] const Diagnosis &Examine();
    // Whether a purchase was accepted.
    bool hasBought() const { return hasBought_; }

private:
    [[nodiscard]] bool FindServer();
    [[nodiscard]] bool TryDownloads();
    [[nodiscard]] bool TryDownload(const std::string &request);
    void ShowDownload(const diagnostics::Exchange &exchange);

    const Examination &examination_;
    Steps steps_;
    Identity identity_;
    Address address_{};
    ArrivalTimes times_;
    diagnostics::Exchange last_;
    std::chrono::milliseconds slowest_{0};
    int seen_ = 0;  // tries in which the first segment was told apart
    int blind_ = 0; // and those in which it was not
    bool hasBought_ = false;
    Diagnosis diagnosis_;
};

// The host in a URL.
[[nodiscard]] std::string HostIn(const std::string &url);

} // namespace client
