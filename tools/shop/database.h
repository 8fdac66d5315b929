// The database in SQLiteCpp's words, with statements made and bound in one go.
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>
#include <SQLiteCpp/VariadicBind.h>

#include <string>
#include <vector>

namespace shop {

using Database = SQLite::Database;
using Statement = SQLite::Statement;

// Every failure throws SQLite::Exception. Parameters are bound in order.
template <class... Values>
[[nodiscard]] Statement Query(Database &database, const std::string &sql, const Values &...values)
{
    Statement statement(database, sql);
    SQLite::bind(statement, values...);
    return statement;
}

// Runs one statement that answers no rows. Answers the number of rows it changed.
template <class... Values>
int Run(Database &database, const std::string &sql, const Values &...values)
{
    return Query(database, sql, values...).exec();
}

// The columns of the row at hand, as texts.
[[nodiscard]] inline std::vector<std::string> TextsOf(Statement &row)
{
    std::vector<std::string> texts;
    for (int column = 0; column < row.getColumnCount(); ++column) {
        texts.push_back(row.getColumn(column).getString());
    }
    return texts;
}

// Takes the write lock at once, so that what is read inside holds until the commit.
// Rolled back at the end of its life unless committed.
class Transaction : public SQLite::Transaction {
public:
    explicit Transaction(Database &database) : SQLite::Transaction(database, SQLite::TransactionBehavior::IMMEDIATE) {}
};

} // namespace shop
