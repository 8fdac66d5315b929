// Managing the devices that may buy, with their public keys and balances.
#pragma once

#include "shop/database/database.h"
#include "token/public_key.h"

namespace shop {

// The largest balance and amount, in cents: adding two never overflows.
inline constexpr Int64 kMostMoney = 1'000'000'000'000;

// Registers the device. One that is registered already gets the new key and the new balance and keeps its purchases.
void RegisterDevice(Database &database, const std::string &serial, int userId, const token::PublicKey &key,
                    Int64 balance);

// Adds to the device's balance and returns the new one. Throws std::runtime_error for an unknown device and for a sum
// above kMostMoney.
Int64 TopUpDevice(Database &database, const std::string &serial, int userId, Int64 amount);

// Removes the device. Throws std::runtime_error for an unknown one, and for one with purchases unless they are to be
// removed too.
void RemoveDevice(Database &database, const std::string &serial, int userId, bool withPurchases);

} // namespace shop
