// A whole call in this process, behind the tap.
#pragma once

#include "driver/scenario.h"
#include "support/sandbox.h"

#include <climits>
#include <functional>
#include <string>

namespace pavonix::e2e {

struct Outcome {
    int result = 0;
    std::string request, record;
    Tree tree;
};

// Where the files of the calls stand.
Sandbox &PlayGround();

// Makes the call against a scripted peer that takes so many bytes of a send at most;
// `interfere` runs right before it.
Outcome Play(const Scenario &call, int takes = INT_MAX, const std::function<void()> &interfere = [] {});

// What came of it and should not have, in words; empty when all is as foretold.
std::string Difference(const Scenario &call, const Outcome &outcome);

} // namespace pavonix::e2e
