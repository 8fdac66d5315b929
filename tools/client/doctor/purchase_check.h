// Tries what a server does with purchases, without buying unless told to.
#pragma once

#include "doctor/doctor.h"

namespace client {

class PurchaseCheck {
public:
    PurchaseCheck(const Examination &examination, const Identity &identity, const Address &address,
                  Diagnosis *diagnosis);

    void Run();

private:
    struct Answer {
        int status = 0;
        int code = 0;
        std::string shown;

        bool operator==(const Answer &other) const { return status == other.status && code == other.code; }
    };

    // One purchase of the chosen good; its reply is judged.
    Answer Try(const std::string &token);
    void TryBadToken(const Answer *baseline);
    void TryClock(const Answer *baseline, int secondsOff);
    void TryAgain(const std::string &token, const Answer &first);

    const Examination &examination_;
    const Identity &identity_;
    const Address &address_;
    Diagnosis *diagnosis_;
    int type_;
    int id_;
    bool goOn_ = true; // false when the server does not answer
};

} // namespace client
