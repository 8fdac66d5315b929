// Tries purchases at a server. Buys nothing unless a good is given.
#pragma once

#include "doctor/doctor.h"

namespace client {

class PurchaseCheck {
public:
    static constexpr int kUnknownPath = 900; // the sample shop's code for an unknown path

    PurchaseCheck(const Examination &examination, const Identity &identity, ProgressLine *progress,
                  Diagnosis *diagnosis);

    // Returns whether a good was bought.
    [[nodiscard]] bool Run();

private:
    struct Result {
        int status = 0;
        int code = 0;
        bool hasCode = false; // has an X-Error-Code in any spelling
        std::string shown;

        // Refused like by a web server with nothing at this address.
        bool isNoShop() const { return status >= 400 && status < 500 && (!hasCode || code == kUnknownPath); }
        bool operator==(const Result &other) const { return status == other.status && code == other.code; }
    };

    [[nodiscard]] bool FindServer();
    [[nodiscard]] bool TryGood(const std::string &token);
    void TryWithoutBuying(const std::string &token);
    // Sends one purchase and diagnoses its reply.
    Result Try(const std::string &token);
    void TryBadToken(const Result *baseline);
    void TryClock(const Result *baseline, int secondsOff);
    void TryAgain(const std::string &token, const Result &first);

    const Examination &examination_;
    const Identity &identity_;
    Address address_{};
    ProgressLine *progress_;
    Diagnosis *diagnosis_;
    int tries_ = 0;
    int type_;
    int id_;
    bool goOn_ = true; // false after a purchase without reply
};

} // namespace client
