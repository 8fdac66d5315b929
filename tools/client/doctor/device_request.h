// Requests of a device, composed by the library's own code.
#pragma once

#include "profile_text.h"

#include <string>

namespace client {

struct Identity {
    std::string userAgent; // empty for the library's default
    std::string serial;
    int userId = 0;
    std::string publicKey;
    std::string privateKey;
};

[[nodiscard]] Identity IdentityOf(const ProfileText &profile);

// url: including the query.
[[nodiscard]] std::string DownloadRequest(const std::string &url, const Identity &identity);
[[nodiscard]] std::string PurchaseRequest(const std::string &url, const Identity &identity, const std::string &token,
                                          int type, int id);

// The token of a device whose clock is off by this many seconds; empty if the keys are
// unusable.
[[nodiscard]] std::string MakeToken(const Identity &identity, int secondsOff);

} // namespace client
