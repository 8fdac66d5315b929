// Random calls and their expected outcome.
#pragma once

#include "driver/device_key.h"
#include "driver/scenario.h"
#include "model/choices.h"

namespace pavonix::e2e {

// The key pair of every drawn profile.
const DeviceKey &DrawnKey();

// Draws a call with any profile, URL, target and reply; the server closes after its last
// piece. An earlier call must have imported DrawnKey, such as PlainPurchase.
Scenario DrawCall(const RowName &name, Choices *choices);
Scenario PlainPurchase();

// Fills in the expected outcome of a call. Supports targets with ASCII names and without
// wildcards, the numeric loopback address, and DrawnKey.
void PredictOutcome(Scenario *call);

} // namespace pavonix::e2e
