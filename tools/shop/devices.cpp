#include "devices.h"

namespace shop {

namespace {

std::runtime_error UnknownDevice(const std::string &serial, int userId)
{
    return std::runtime_error("there is no device " + serial + " with user " + std::to_string(userId));
}

} // namespace

void RegisterDevice(Database &database, const std::string &serial, int userId, const token::PublicKey &key,
                    std::int64_t balance)
{
    Run(database,
        "INSERT INTO device (serial, user_id, public_key, balance) VALUES (?1, ?2, ?3, ?4) "
        "ON CONFLICT DO UPDATE SET public_key = ?3, balance = ?4",
        serial, userId, token::PublicKeyToPem(key), balance);
}

std::int64_t TopUpDevice(Database &database, const std::string &serial, int userId, std::int64_t amount)
{
    Statement row = Query(database,
                          "UPDATE device SET balance = balance + ? WHERE serial = ? AND user_id = ? "
                          "RETURNING balance",
                          amount, serial, userId);
    if (!row.executeStep()) {
        throw UnknownDevice(serial, userId);
    }
    return row.getColumn(0).getInt64();
}

void RemoveDevice(Database &database, const std::string &serial, int userId, bool withPurchases)
{
    Transaction transaction(database);
    Statement count = Query(database, "SELECT count(*) FROM purchase WHERE serial = ? AND user_id = ?", serial, userId);
    (void)count.executeStep();
    const int purchases = count.getColumn(0);
    count.reset();
    if (purchases > 0 && !withPurchases) {
        throw std::runtime_error("device " + serial + " has purchases, " + std::to_string(purchases) +
                                 " in all; --with-purchases removes them too");
    }
    Run(database, "DELETE FROM purchase WHERE serial = ? AND user_id = ?", serial, userId);
    if (Run(database, "DELETE FROM device WHERE serial = ? AND user_id = ?", serial, userId) == 0) {
        throw UnknownDevice(serial, userId);
    }
    transaction.commit();
}

token::PublicKey FindDeviceKey(Database &database, const std::string &serial, int userId)
{
    Statement row = Query(database, "SELECT public_key FROM device WHERE serial = ? AND user_id = ?", serial, userId);
    return row.executeStep() ? token::ReadPublicKey(row.getColumn(0).getString()) : nullptr;
}

} // namespace shop
