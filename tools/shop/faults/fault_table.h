// Faults by name: ways in which the shop can misbehave, to try a client on.
#pragma once

#include "shop/transmission.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace shop {

struct Fault {
    std::string name;
    std::string does; // what the shop does, for people

    // What the library makes of it. A download: the status, and the file against the
    // body that was meant: right, zeros (at its beginning), cut, longer, coded, none.
    // A purchase: the status, and for a refusal the record's code. "waits": for ever.
    std::string download; // a reply of more than 1024 bytes
    std::string sale;     // a purchase that the shop accepts
    std::string refusal;  // one that it refuses with 903

    // One of the two. A fault that has an answer of its own leaves the shop untouched;
    // otherwise the shop answers, sells if asked to, and its reply is sent so.
    std::function<Response()> answer;
    std::function<Transmission(Response)> send;
};

[[nodiscard]] const std::vector<Fault> &AllFaults();

// Null when no fault has that name.
[[nodiscard]] const Fault *FindFault(std::string_view name);

// Takes "/fault/NAME" off the request's target. Answers the fault, null when the
// target does not begin so; throws Refusal(kUnknownPath) for a name that is none.
[[nodiscard]] const Fault *TakeFault(Request *request);

} // namespace shop
