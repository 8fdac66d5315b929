// The devices that may buy, with their public keys and balances.
#pragma once

#include "token/public_key.h"
#include "sqlite.h"

namespace shop {

// Registers the device; one that is registered already gets the new key and the
// new balance and keeps what it bought. balance: cents.
void RegisterDevice(Database &database, const std::string &serial, int userId, const token::PublicKey &key,
                    std::int64_t balance);

// Answers the registered key of the device, or null for an unknown device.
[[nodiscard]] token::PublicKey FindDeviceKey(Database &database, const std::string &serial, int userId);

} // namespace shop
