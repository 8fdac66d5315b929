// The devices that may buy, with their public keys and balances.
#pragma once

#include "database.h"
#include "token/public_key.h"

namespace shop {

// Registers the device; one that is registered already gets the new key and the
// new balance and keeps what it bought. balance: cents.
void RegisterDevice(Database &database, const std::string &serial, int userId, const token::PublicKey &key,
                    std::int64_t balance);

// Adds to the device's balance, in cents, and answers the new one. Throws
// std::runtime_error for an unknown device.
std::int64_t TopUpDevice(Database &database, const std::string &serial, int userId, std::int64_t amount);

// Removes the device. Throws std::runtime_error for an unknown one, and for one with
// purchases unless they are to be removed too.
void RemoveDevice(Database &database, const std::string &serial, int userId, bool withPurchases);

// Answers the registered key of the device, or null for an unknown device.
[[nodiscard]] token::PublicKey FindDeviceKey(Database &database, const std::string &serial, int userId);

} // namespace shop
