#include "devices.h"

namespace shop {

namespace {

std::runtime_error UnknownDevice(const std::string &serial, int userId)
{
    return std::runtime_error("there is no device " + serial + " with user " + std::to_string(userId));
}

} // namespace

void RegisterDevice(Database &database, const std::string &serial, int userId, const token::PublicKey &key,
                    Int64 balance)
{
    Run(database,
        "INSERT INTO device (serial, user_id, public_key, balance) VALUES (:serial, :user, :key, :balance) "
        "ON CONFLICT (serial, user_id) DO UPDATE SET public_key = excluded.public_key, balance = excluded.balance",
        serial, userId, token::PublicKeyToPem(key), balance);
}

Int64 TopUpDevice(Database &database, const std::string &serial, int userId, Int64 amount)
{
    const auto balance = Select<Int64>(database,
                                       "UPDATE device SET balance = balance + :amount WHERE serial = :serial "
                                       "AND user_id = :user AND balance <= :most RETURNING balance",
                                       amount, serial, userId, kMostMoney - amount);
    if (!balance.empty()) {
        return std::get<0>(balance[0]);
    }
    if (Select<int>(database, "SELECT 1 FROM device WHERE serial = :serial AND user_id = :user", serial, userId)
            .empty()) {
        throw UnknownDevice(serial, userId);
    }
    throw std::runtime_error("the balance would exceed " + std::to_string(kMostMoney) + " cents");
}

void RemoveDevice(Database &database, const std::string &serial, int userId, bool withPurchases)
{
    Transaction transaction(database);
    const Int64 purchases =
        std::get<0>(Select<Int64>(database, "SELECT count(*) FROM purchase WHERE serial = :serial AND user_id = :user",
                                  serial, userId)
                        .at(0));
    if (purchases > 0 && !withPurchases) {
        throw std::runtime_error("device " + serial + " has purchases, " + std::to_string(purchases) +
                                 " in all; --with-purchases removes them too");
    }
    Run(database, "DELETE FROM purchase WHERE serial = :serial AND user_id = :user", serial, userId);
    if (Run(database, "DELETE FROM device WHERE serial = :serial AND user_id = :user", serial, userId) == 0) {
        throw UnknownDevice(serial, userId);
    }
    transaction.Commit();
}

} // namespace shop
