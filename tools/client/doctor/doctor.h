// Examines a server: will it do for these devices?
#pragma once

#include "doctor/device_request.h"
#include "doctor/diagnosis.h"
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
    GoodListRequest list{};
    std::optional<OneGoodRequest> good;     // asked for instead of the list
    std::string profile;                    // empty: no purchases
    std::optional<std::pair<int, int>> buy; // type and id of a good to buy
    std::string library;
    int tries = 10;
    std::chrono::milliseconds patience{10000}; // for each connection and each exchange
};

// Downloads over plain sockets, tries purchases, and then downloads through the
// library. Every wait ends after `patience`.
class Doctor {
public:
    explicit Doctor(const Examination &examination) : examination_(examination) {}

    [[nodiscard]] const Diagnosis &Examine();

private:
    [[nodiscard]] bool FindServer();
    [[nodiscard]] bool TryDownloads();
    [[nodiscard]] bool TryDownload(const std::string &request);
    void ShowDownload(const diagnostics::Exchange &exchange);

    const Examination &examination_;
    Identity identity_;
    Address address_;
    ArrivalTimes times_;
    diagnostics::Exchange last_;
    std::chrono::milliseconds slowest_{0};
    int seen_ = 0;  // tries in which the first segment was told apart
    int blind_ = 0; // and those in which it was not
    Diagnosis diagnosis_;
};

} // namespace client
