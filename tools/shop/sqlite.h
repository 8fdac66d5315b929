// SQLite with owners: a database, its statements and its transactions.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace shop {

struct DatabaseError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// One prepared statement. Parameters are bound in order; every failure throws DatabaseError.
class Statement {
public:
    Statement(sqlite3 *database, std::string_view sql);

    // Binding keeps a copy of texts and bytes.
    void BindNext(std::int64_t value);
    void BindNext(std::string_view text);
    void BindNext(std::span<const unsigned char> bytes);

    // Answers true while there is a row to read.
    [[nodiscard]] bool Step();

    std::int64_t Integer(int column) const { return sqlite3_column_int64(statement_.get(), column); }
    std::string Text(int column) const;

private:
    void Check(int result) const;

    struct Finalize {
        void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
    };
    sqlite3 *database_;
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
    int bound_ = 0;
};

class Database {
public:
    // Opens the file, creating an empty one when missing. Commits are synchronised
    // to the disk; another process's lock is waited for, a few seconds at most.
    explicit Database(const std::string &file);

    template <class... Values>
    [[nodiscard]] Statement Query(std::string_view sql, const Values &...values)
    {
        Statement statement(database_.get(), sql);
        (statement.BindNext(values), ...);
        return statement;
    }

    // Runs one statement that answers no rows. Answers the number of rows it changed.
    template <class... Values>
    int Run(std::string_view sql, const Values &...values)
    {
        while (Query(sql, values...).Step()) {
        }
        return sqlite3_changes(database_.get());
    }

    // Runs several statements without parameters.
    void RunScript(const char *sql);

    std::int64_t LastRowId() const { return sqlite3_last_insert_rowid(database_.get()); }

private:
    struct Close {
        void operator()(sqlite3 *database) const { sqlite3_close(database); }
    };
    std::unique_ptr<sqlite3, Close> database_;
};

// Takes the write lock at once, so that what is read inside holds until the
// commit. Rolled back at the end of its life unless committed.
class Transaction {
public:
    explicit Transaction(Database &database) : database_(database) { database_.RunScript("BEGIN IMMEDIATE"); }
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    void Commit();

private:
    Database &database_;
    bool open_ = true;
};

} // namespace shop
