#include "shop/window/shop_view.h"

#include "shop/texts.h"

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

std::string Money(const std::string &cents)
{
    std::string text(cents.size() < 3 ? 3 - cents.size() : 0, '0');
    text += cents;
    return text.insert(text.size() - 2, ".");
}

// select: its last column is in cents; at most a hundred rows are shown.
std::string TableAsHtml(Database &database, const std::string &title, const std::string &table, const Texts &columns,
                        const std::string &select)
{
    const auto count = Select<std::string>(database, "SELECT count(*) FROM " + table);
    std::string html = "<section id=\"" + table + "s\"><h2>" + title + " <small>" + std::get<0>(count.at(0)) +
                       "</small></h2><div class=\"scroll\"><table>" + RowAsHtml(columns, "th");
    ForEachRow(database, select + " LIMIT 100", columns.size(), [&](Texts row) {
        row.back() = Money(row.back());
        html += RowAsHtml(row, "td");
    });
    return html + "</table></div></section>";
}

} // namespace

std::string ShopAsHtml(Database &database)
{
    return TableAsHtml(database, "Purchases", "purchase", {"number", "at", "serial", "user", "title", "price"},
                       "SELECT number, bought_at, serial, user_id, title, purchase.price FROM purchase "
                       "JOIN good ON good.type = purchase.type AND good.id = purchase.id ORDER BY number DESC") +
           TableAsHtml(database, "Devices", "device", {"serial", "user", "balance"},
                       "SELECT serial, user_id, balance FROM device ORDER BY serial, user_id") +
           TableAsHtml(database, "Goods", "good", {"type", "id", "title", "maker", "price"},
                       "SELECT type, id, title, maker, price FROM good ORDER BY type, id");
}

} // namespace shop
