#include "sqlite.h"

namespace shop {

namespace {

constexpr int kLockWaitMilliseconds = 5000;

} // namespace

Statement::Statement(sqlite3 *database, std::string_view sql) : database_(database)
{
    sqlite3_stmt *statement = nullptr;
    const int result = sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &statement, nullptr);
    statement_.reset(statement);
    Check(result);
}

void Statement::Check(int result) const
{
    if (result != SQLITE_OK) {
        throw DatabaseError(sqlite3_errmsg(database_));
    }
}

void Statement::BindNext(std::int64_t value)
{
    Check(sqlite3_bind_int64(statement_.get(), ++bound_, value));
}

void Statement::BindNext(std::string_view text)
{
    Check(sqlite3_bind_text(statement_.get(), ++bound_, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT));
}

void Statement::BindNext(std::span<const unsigned char> bytes)
{
    Check(
        sqlite3_bind_blob(statement_.get(), ++bound_, bytes.data(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT));
}

bool Statement::Step()
{
    const int result = sqlite3_step(statement_.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE) {
        throw DatabaseError(sqlite3_errmsg(database_));
    }
    return result == SQLITE_ROW;
}

std::string Statement::Text(int column) const
{
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(statement_.get(), column));
    return text == nullptr
               ? std::string()
               : std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column)));
}

Database::Database(const std::string &file)
{
    sqlite3 *database = nullptr;
    const int result = sqlite3_open(file.c_str(), &database);
    database_.reset(database);
    if (result != SQLITE_OK) {
        throw DatabaseError(file + ": " + sqlite3_errmsg(database));
    }
    sqlite3_busy_timeout(database, kLockWaitMilliseconds);
    RunScript("PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON");
}

void Database::RunScript(const char *sql)
{
    if (sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw DatabaseError(sqlite3_errmsg(database_.get()));
    }
}

Transaction::~Transaction()
{
    if (open_) {
        try {
            database_.RunScript("ROLLBACK");
        } catch (const DatabaseError &) {
            // SQLite has rolled back on its own, after a full disk for instance.
        }
    }
}

void Transaction::Commit()
{
    database_.RunScript("COMMIT");
    open_ = false;
}

} // namespace shop
