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

    std::string download, sale, refusal; // what the library makes of it: fault_outcomes.h

    // One of the two. A fault that has an answer of its own leaves the shop untouched;
    // otherwise the shop answers, sells if asked to, and its reply is sent so.
    std::function<Response()> answer;
    std::function<Transmission(Response)> send;
};

[[nodiscard]] const std::vector<Fault> &AllFaults();

// Null when no fault has that name.
[[nodiscard]] const Fault *FindFault(std::string_view name);

// Takes "/fault/NAME" off the request's target. Returns the fault, null when the
// target does not begin so; throws Refusal(kUnknownPath) for a name that is none.
[[nodiscard]] const Fault *TakeFault(Request *request);

} // namespace shop
