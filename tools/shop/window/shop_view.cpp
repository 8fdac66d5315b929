#include "shop/window/shop_view.h"

#include "shop/window/html.h"

namespace shop {

namespace {

std::string RowAsHtml(const std::vector<std::string> &texts, const std::string &cell)
{
    std::string html = "<tr>";
    for (const std::string &text : texts) {
        html += "<" + cell + ">" + Html(text) + "</" + cell + ">";
    }
    return html + "</tr>";
}

// table: what all rows come from, of which `sql` answers a hundred at most.
std::string TableAsHtml(Database &database, const std::string &title, const std::string &table, const std::string &sql)
{
    const std::string count = database.execAndGet("SELECT count(*) FROM " + table).getString();
    Statement row = Query(database, sql + " LIMIT 100");
    std::vector<std::string> names;
    for (int column = 0; column < row.getColumnCount(); ++column) {
        names.emplace_back(row.getColumnName(column));
    }
    std::string html = "<section id=\"" + table + "s\"><h2>" + title + " <small>" + count +
                       "</small></h2><div class=\"scroll\"><table>" + RowAsHtml(names, "th");
    while (row.executeStep()) {
        html += RowAsHtml(TextsOf(row), "td");
    }
    return html + "</table></div></section>";
}

} // namespace

std::string ShopAsHtml(Database &database)
{
    return TableAsHtml(database, "Purchases", "purchase",
                       "SELECT number, bought_at AS at, serial, user_id AS user, title, "
                       "printf('%.2f', purchase.price / 100.0) AS price FROM purchase JOIN good USING (type, id) "
                       "ORDER BY number DESC") +
           TableAsHtml(database, "Devices", "device",
                       "SELECT serial, user_id AS user, printf('%.2f', balance / 100.0) AS balance "
                       "FROM device ORDER BY serial, user_id") +
           TableAsHtml(database, "Goods", "good",
                       "SELECT type, id, title, maker, printf('%.2f', price / 100.0) AS price FROM good "
                       "ORDER BY type, id");
}

} // namespace shop
