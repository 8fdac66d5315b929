// Requests as a device makes them, put together by the library's own code.
#pragma once

#include "profile_text.h"

#include <string>

namespace client {

struct Identity {
    std::string userAgent; // empty: the library's own
    std::string serial;
    int userId = 0;
    std::string publicKey;
    std::string privateKey;
};

[[nodiscard]] Identity IdentityOf(const ProfileText &profile);

// url: with the query of a download.
[[nodiscard]] std::string DownloadRequest(const std::string &url, const Identity &identity);
[[nodiscard]] std::string PurchaseRequest(const std::string &url, const Identity &identity, const std::string &token,
                                          int type, int id);

// The token of a device whose clock is off by so many seconds; empty when the
// keys make none.
[[nodiscard]] std::string MakeToken(const Identity &identity, int secondsOff);

} // namespace client
