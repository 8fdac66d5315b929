// Tries a server's purchases, without buying anything unless a good is named.
#pragma once

#include "doctor/doctor.h"

namespace client {

class PurchaseCheck {
public:
    static constexpr int kNothingThere = 900; // the sample shop's code for a path that it does not have

    PurchaseCheck(const Examination &examination, const Identity &identity, Steps *steps, Diagnosis *diagnosis);

    // Returns whether a good was bought.
    [[nodiscard]] bool Run();

private:
    struct Answer {
        int status = 0;
        int code = 0;
        bool hasCode = false; // an X-Error-Code in any spelling
        std::string shown;

        // Refused as by a web server that has nothing at this address.
        bool isNoShop() const { return status >= 400 && status < 500 && (!hasCode || code == kNothingThere); }
        bool operator==(const Answer &other) const { return status == other.status && code == other.code; }
    };

    [[nodiscard]] bool FindServer();
    [[nodiscard]] bool TryGood(const std::string &token);
    void TryWithoutBuying(const std::string &token);
    // One purchase of the chosen good; its reply is diagnosed.
    Answer Try(const std::string &token);
    void TryBadToken(const Answer *baseline);
    void TryClock(const Answer *baseline, int secondsOff);
    void TryAgain(const std::string &token, const Answer &first);

    const Examination &examination_;
    const Identity &identity_;
    Address address_{};
    Steps *steps_;
    Diagnosis *diagnosis_;
    int tries_ = 0;
    int type_;
    int id_;
    bool goOn_ = true; // false once the server sends no reply
};

} // namespace client
