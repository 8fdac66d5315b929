// Whole calls by chance, and what must come of them.
#pragma once

#include "driver/device_key.h"
#include "driver/scenario.h"
#include "model/choices.h"

namespace pavonix::e2e {

// The key pair of every drawn profile.
const DeviceKey &DrawnKey();

// A call with whatever profile, address, target and reply; the server closes after
// its last piece. Of the calls before it one matters: the library
// must have read DrawnKey, as PlainPurchase makes it do.
Scenario DrawCall(const RowName &name, Choices *choices);
Scenario PlainPurchase();

// Fills in what must come of a call of which the rest is given. Knows targets of
// ASCII names without patterns, addresses of the loopback's number, and keys that
// are DrawnKey's.
void PredictOutcome(Scenario *call);

} // namespace pavonix::e2e
