#include "shop/database/database.h"

#include "diagnostics/printable.h"
#include "shop/database/postgresql.h"

#include <soci/sqlite3/soci-sqlite3.h>

#include <regex>

namespace shop {

namespace {

bool IsUrl(const std::string &place)
{
    return place.starts_with("postgresql://") || place.starts_with("postgres://");
}

std::string FileParameters(const std::string &file)
{
    if (file.empty() || file.find('"') != std::string::npos) {
        throw std::runtime_error("the name of a database file must not be empty or contain quotation marks");
    }
    return "db=\"" + file + "\" timeout=5";
}

std::unique_ptr<soci::session> Connect(const std::string &place)
{
    if (!IsUrl(place)) {
        auto session = std::make_unique<soci::session>(soci::sqlite3, FileParameters(place));
        // Not among the parameters: SOCI would set these before the time to wait for a lock.
        session->once << "PRAGMA synchronous = FULL";
        session->once << "PRAGMA foreign_keys = ON";
        return session;
    }
    // Neither an unreachable server nor a hanging one may hold a connection longer than the front waits for a page.
    const bool parameters = place.find('?') != std::string::npos;
    auto session = std::make_unique<soci::session>(PostgresqlBackend(), place + (parameters ? "&" : "?") +
                                                                            "connect_timeout=2&tcp_user_timeout=10000");
    session->once << "SET statement_timeout = '10s'";
    session->once << "SET client_min_messages = warning";
    return session;
}

} // namespace

Database::Database(const std::string &place) : session_(Connect(place)), postgresql_(IsUrl(place)) {}

std::string ShownPlace(const std::string &place)
{
    if (!IsUrl(place)) {
        return diagnostics::Printable(place);
    }
    static const std::regex kUserPassword("://([^/?#:@]*):[^/?#]*@");
    static const std::regex kPassword("([?&](ssl)?password=)[^&]*");
    const std::string shown = std::regex_replace(place, kUserPassword, "://$1@");
    return diagnostics::Printable(std::regex_replace(shown, kPassword, "$1..."));
}

std::string MessageOf(const soci::soci_error &failure)
{
    static const std::regex kSpaces("\\s+");
    static const std::regex kFrame(
        "^(sqlite3_statement_backend::\\w+: |(Cannot [a-z ]*|Fatal error)\\. )?((ERROR|FATAL): )?|( LINE \\d+: .*| )$");
    const std::string line = std::regex_replace(failure.get_error_message(), kSpaces, " ");
    return std::regex_replace(line, kFrame, "");
}

void ForEachRow(Database &database, const std::string &sql, std::size_t columns,
                const std::function<void(const Texts &)> &row)
{
    Texts texts(columns);
    soci::statement statement(database.session());
    for (std::string &text : texts) {
        statement.exchange(soci::into(text));
    }
    statement.alloc();
    statement.prepare(sql);
    statement.define_and_bind();
    for (bool more = statement.execute(true); more; more = statement.fetch()) {
        row(texts);
    }
}

Transaction::Transaction(Database &database) : database_(database)
{
    database.Run(database.IsPostgresql() ? "BEGIN" : "BEGIN IMMEDIATE");
}

Transaction::~Transaction()
{
    try {
        if (open_) {
            database_.Run("ROLLBACK");
        }
    } catch (const soci::soci_error &) { // NOLINT(bugprone-empty-catch)
        // A lost connection rolls back by itself.
    }
}

void Transaction::Commit()
{
    try {
        database_.Run("COMMIT");
        open_ = false;
    } catch (const soci::soci_error &failure) {
        throw CommitFailed("the commit failed: " + MessageOf(failure));
    }
}

} // namespace shop
