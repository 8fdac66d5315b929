// A whole call in this process, on the tap.
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

// The folder of the calls' files.
Sandbox &PlayGround();

// Makes the call with a scripted peer that accepts at most `takes` bytes per send;
// `interfere` runs right before it.
Outcome Play(const Scenario &call, int takes = INT_MAX, const std::function<void()> &interfere = [] {});

// Describes the differences from the expected outcome; empty if there are none.
std::string Difference(const Scenario &call, const Outcome &outcome);

} // namespace pavonix::e2e
