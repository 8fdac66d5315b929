#include "shop_database.h"

namespace shop {

namespace {

constexpr std::int64_t kVersion = 1;

// Prices and balances are cents. A good is known by type and id. A token is kept
// as the ciphertext itself: any other spelling of its base64 is the same token.
constexpr const char *kTables = R"(
CREATE TABLE type (
    id INTEGER PRIMARY KEY,
    name TEXT NOT NULL
) STRICT;
CREATE TABLE category (
    type INTEGER NOT NULL REFERENCES type (id),
    id INTEGER NOT NULL CHECK (id > 0),
    name TEXT NOT NULL,
    PRIMARY KEY (type, id)
) STRICT;
CREATE TABLE good (
    type INTEGER NOT NULL,
    id INTEGER NOT NULL,
    category INTEGER NOT NULL,
    title TEXT NOT NULL,
    maker TEXT NOT NULL,
    price INTEGER NOT NULL CHECK (price >= 0),
    added TEXT NOT NULL,
    description TEXT NOT NULL,
    PRIMARY KEY (type, id),
    FOREIGN KEY (type, category) REFERENCES category (type, id)
) STRICT;
CREATE TABLE device (
    serial TEXT NOT NULL,
    user_id INTEGER NOT NULL,
    public_key TEXT NOT NULL,
    balance INTEGER NOT NULL CHECK (balance >= 0),
    PRIMARY KEY (serial, user_id)
) STRICT;
CREATE TABLE purchase (
    number INTEGER PRIMARY KEY AUTOINCREMENT,
    serial TEXT NOT NULL,
    user_id INTEGER NOT NULL,
    type INTEGER NOT NULL,
    id INTEGER NOT NULL,
    price INTEGER NOT NULL,
    bought_at TEXT NOT NULL,
    FOREIGN KEY (serial, user_id) REFERENCES device (serial, user_id),
    FOREIGN KEY (type, id) REFERENCES good (type, id)
) STRICT;
CREATE TABLE token (
    ciphertext BLOB PRIMARY KEY,
    seen_at INTEGER NOT NULL
) STRICT;
PRAGMA user_version = 1;
)";

std::int64_t Version(Database &database)
{
    Statement version = database.Query("PRAGMA user_version");
    return version.Step() ? version.Integer(0) : 0;
}

} // namespace

Database OpenShopDatabase(const std::string &file)
{
    Database database(file);
    // Under the write lock: two programs may be the first one at the same time.
    Transaction transaction(database);
    if (Version(database) == 0) {
        database.RunScript(kTables);
        AddDemonstrationGoods(database);
    }
    if (Version(database) != kVersion) {
        throw DatabaseError(file + ": made by another version of this program");
    }
    transaction.Commit();
    return database;
}

} // namespace shop
