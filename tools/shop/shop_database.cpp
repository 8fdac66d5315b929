#include "shop_database.h"

#include "diagnostics/printable.h"

namespace shop {

namespace {

constexpr int kVersion = 1;
constexpr int kApplication = 0x50565853; // "PVXS", what a file of this program says it is
constexpr int kLockWaitMilliseconds = 5000;

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
)";

int Number(Database &database, const std::string &sql)
{
    return database.execAndGet(sql).getInt();
}

void MarkAsOurs(Database &database)
{
    database.exec("PRAGMA user_version = " + std::to_string(kVersion));
    database.exec("PRAGMA application_id = " + std::to_string(kApplication));
}

void Require(bool holds, const std::string &complaint)
{
    if (!holds) {
        throw std::runtime_error(complaint);
    }
}

// A table that is missing or another one would be found out by a customer otherwise.
void RequireTables(Database &database)
{
    Database model(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    model.exec(kTables);
    Statement table = Query(model, "SELECT name, sql FROM sqlite_schema WHERE name NOT LIKE 'sqlite_%'");
    while (table.executeStep()) {
        const std::string name = table.getColumn(0);
        Statement same = Query(database, "SELECT 1 FROM sqlite_schema WHERE name = ? AND sql = ?", name,
                               table.getColumn(1).getString());
        Require(same.executeStep(), "no database of this shop: its table " + name + " is missing or another one");
    }
}

// Another program's file stays as it is.
void RequireOurs(Database &database)
{
    const int application = Number(database, "PRAGMA application_id");
    // The first databases of this program said nothing.
    Require(application == kApplication || application == 0, "a database of another program");
    Require(application != kApplication || Number(database, "PRAGMA user_version") == kVersion,
            "made by another version of this program");
    RequireTables(database);
    const std::string damage = database.execAndGet("PRAGMA quick_check").getString();
    Require(damage == "ok", "the database is damaged: " + damage);
    Require(Number(database, "SELECT count(*) FROM pragma_foreign_key_check") == 0,
            "the database is damaged: it names goods, devices or categories that it lacks");
}

Database Open(const std::string &file)
{
    Database database(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE, kLockWaitMilliseconds);
    database.exec("PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON");
    // Under the write lock: two programs may be the first one at the same time.
    Transaction transaction(database);
    if (Number(database, "SELECT count(*) FROM sqlite_schema") == 0 && Number(database, "PRAGMA user_version") == 0) {
        database.exec(kTables);
        AddDemonstrationGoods(database);
    } else {
        RequireOurs(database);
    }
    if (Number(database, "PRAGMA application_id") == 0) {
        MarkAsOurs(database);
    }
    transaction.commit();
    return database;
}

} // namespace

Database OpenShopDatabase(const std::string &file)
{
    try {
        return Open(file);
    } catch (const std::exception &failure) {
        throw std::runtime_error("--db " + diagnostics::Printable(file) + ": " + failure.what());
    }
}

} // namespace shop
