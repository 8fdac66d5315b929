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
    std::string does; // a description for people

    std::string download, sale, refusal; // the library's results, from fault_outcomes.h

    // One of the two. A fault with a reply of its own does not reach the shop;
    // otherwise the shop handles the request, also a purchase, and its reply is sent this way.
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
