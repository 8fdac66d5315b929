// Every reason for which the shop refuses a request.
//
// A refusal has the HTTP status, the code in "X-Error-Code" and a text
// in "X-Error-Message". Code 906 also carries "X-Server-Timestamp", the shop's
// own local time written as in token/time_text.h, so that a device can set its clock.
// The client reads code 0 as "no code" and treats 906 specially; a shop is free
// in all others.
#pragma once

#include <array>
#include <stdexcept>
#include <string>

namespace shop {

struct ErrorKind {
    int status;
    int code;
    const char *text;
};

inline constexpr ErrorKind kUnknownPath{404, 900, "There is nothing at this path"};
inline constexpr ErrorKind kWrongParameter{400, 901, "A parameter is missing or wrong"};
inline constexpr ErrorKind kUnknownCategory{404, 902, "There is no such type or category"};
inline constexpr ErrorKind kUnknownGood{404, 903, "There is no such good"};
inline constexpr ErrorKind kUnknownDevice{403, 904, "This device is not registered"};
inline constexpr ErrorKind kInvalidToken{403, 905, "The token was not made of a time with the key of this device"};
inline constexpr ErrorKind kClockOff{403, 906, "The clock of the device is off"};
inline constexpr ErrorKind kReplayedToken{403, 907, "The token was used before"};
inline constexpr ErrorKind kAlreadyOwned{409, 908, "This good is already owned, force buys it again"};
inline constexpr ErrorKind kBalanceTooLow{402, 909, "The balance does not cover the price"};
inline constexpr ErrorKind kWrongMethod{405, 910, "This path is asked with another method"};
inline constexpr ErrorKind kLengthRequired{411, 911, "The Content-Length is missing"};
inline constexpr ErrorKind kRequestTooLarge{413, 912, "The request is too large"};
inline constexpr ErrorKind kNotAForm{415, 913, "The body is not application/x-www-form-urlencoded"};
inline constexpr ErrorKind kMalformedRequest{400, 914, "This is not a whole HTTP request"};
inline constexpr ErrorKind kShopFailure{500, 999, "The shop failed, its log says why"};
inline constexpr ErrorKind kShopBusy{503, 999, "The shop cannot reach its database, try again later"};

// One for each code.
inline constexpr std::array kErrorKinds = {kUnknownPath,   kWrongParameter,  kUnknownCategory,  kUnknownGood,
                                           kUnknownDevice, kInvalidToken,    kClockOff,         kReplayedToken,
                                           kAlreadyOwned,  kBalanceTooLow,   kWrongMethod,      kLengthRequired,
                                           kNotAForm,      kRequestTooLarge, kMalformedRequest, kShopFailure};

// Thrown where the reason is found; Shop::Handle makes it an error response.
class Refusal : public std::runtime_error {
public:
    // detail: plain ASCII of the shop's own making, never text from the request.
    explicit Refusal(const ErrorKind &kind, const std::string &detail = "")
        : std::runtime_error(detail.empty() ? kind.text : kind.text + (": " + detail)), kind_(kind)
    {
    }

    const ErrorKind &kind() const { return kind_; }

private:
    ErrorKind kind_;
};

} // namespace shop
