// A connection to the shop's database, a file of SQLite or a server of PostgreSQL, by SOCI.
#pragma once

#include <soci/soci.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

namespace shop {

using Int64 = long long; // SOCI's type for 64-bit columns

// A commit that failed: whether it counts is not known, so it must not be repeated.
struct CommitFailed : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class Database {
public:
    // Connects. place: a file, created when missing, or postgresql://... Failures of this and of all that uses it
    // throw soci::soci_error, a std::runtime_error.
    explicit Database(const std::string &place);

    bool IsPostgresql() const { return postgresql_; }
    // False once the server has closed the connection.
    bool IsConnected() const { return session_->is_connected(); }

    soci::session &session() { return *session_; }

    // Runs one statement without values.
    void Run(const std::string &sql) { session_->once << sql; }

private:
    std::unique_ptr<soci::session> session_;
    bool postgresql_;
};

// The place as it may be shown: without a password and without control characters.
[[nodiscard]] std::string ShownPlace(const std::string &place);

// The engine's message in one line.
[[nodiscard]] std::string MessageOf(const soci::soci_error &failure);

// A statement that is prepared at its first use and kept. Row: a tuple of the columns' types, empty if there are
// none. Values: the types of the values of ":name", in order. Both are int, Int64 or std::string.
template <class Row, class... Values>
class Statement {
public:
    Statement(Database &database, std::string sql) : database_(&database), sql_(std::move(sql)) {}
    // Bound to its members.
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;
    ~Statement() = default;

    // Runs it. Reads all rows, as an open cursor keeps SQLite's lock.
    std::vector<Row> operator()(const Values &...values)
    {
        if (statement_ == nullptr) {
            Prepare();
        }
        values_ = {values...};
        std::vector<Row> rows;
        for (bool more = statement_->execute(true); more; more = statement_->fetch()) {
            rows.push_back(row_);
        }
        return rows;
    }

    // The number of rows that the last run changed.
    Int64 changed() { return statement_->get_affected_rows(); }

private:
    void Prepare()
    {
        auto statement = std::make_unique<soci::statement>(database_->session());
        std::apply([&](auto &...column) { (statement->exchange(soci::into(column)), ...); }, row_);
        std::apply([&](const auto &...value) { (statement->exchange(soci::use(value)), ...); }, values_);
        statement->alloc();
        statement->prepare(sql_);
        statement->define_and_bind();
        statement_ = std::move(statement);
    }

    Database *database_;
    std::string sql_;
    Row row_;
    std::tuple<Values...> values_;
    std::unique_ptr<soci::statement> statement_;
};

// Runs a statement once. Returns its rows.
template <class... Columns, class... Values>
std::vector<std::tuple<Columns...>> Select(Database &database, const std::string &sql, const Values &...values)
{
    return Statement<std::tuple<Columns...>, Values...>(database, sql)(values...);
}

// Runs a statement once. Returns the number of rows that it changed.
template <class... Values>
Int64 Run(Database &database, const std::string &sql, const Values &...values)
{
    Statement<std::tuple<>, Values...> statement(database, sql);
    (void)statement(values...);
    return statement.changed();
}

// Calls `row` with each row's columns, as texts.
using Texts = std::vector<std::string>;
void ForEachRow(Database &database, const std::string &sql, std::size_t columns,
                const std::function<void(const Texts &)> &row);

// SQLite takes the write lock at once, so that what is read inside holds until the commit; on PostgreSQL the reader
// locks the rows that it needs. Rolled back at the end of its life unless committed.
class Transaction {
public:
    explicit Transaction(Database &database);
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;
    ~Transaction();

    // Throws CommitFailed.
    void Commit();

private:
    Database &database_;
    bool open_ = true;
};

} // namespace shop
