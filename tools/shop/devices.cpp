#include "devices.h"

namespace shop {

void RegisterDevice(Database &database, const std::string &serial, int userId, const token::PublicKey &key,
                    std::int64_t balance)
{
    database.Run("INSERT INTO device (serial, user_id, public_key, balance) VALUES (?1, ?2, ?3, ?4) "
                 "ON CONFLICT DO UPDATE SET public_key = ?3, balance = ?4",
                 serial, userId, token::PublicKeyToPem(key), balance);
}

token::PublicKey FindDeviceKey(Database &database, const std::string &serial, int userId)
{
    Statement row = database.Query("SELECT public_key FROM device WHERE serial = ? AND user_id = ?", serial, userId);
    return row.Step() ? token::ReadPublicKey(row.Text(0)) : nullptr;
}

} // namespace shop
