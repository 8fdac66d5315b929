#include "shop/admin/lists.h"

#include "shop/admin/csv.h"
#include "shop/texts.h"

namespace shop {

namespace {

void WriteRow(std::ostream &out, ListForm form, const CsvRow &row)
{
    if (form == ListForm::kCsv) {
        WriteCsv(out, row);
        return;
    }
    for (std::size_t i = 0; i < row.size(); ++i) {
        out << (i == 0 ? "" : "\t") << ForTerminal(row[i]);
    }
    out << '\n';
}

void WriteList(std::ostream &out, ListForm form, Statement row)
{
    CsvRow names;
    for (int column = 0; column < row.getColumnCount(); ++column) {
        names.emplace_back(row.getColumnName(column));
    }
    WriteRow(out, form, names);
    while (row.executeStep()) {
        WriteRow(out, form, TextsOf(row));
    }
}

} // namespace

void ListGoods(Database &database, std::ostream &out)
{
    WriteList(out, ListForm::kTabs,
              Query(database, "SELECT type, id, category, price, added, title, maker FROM good ORDER BY type, id"));
}

void ListDevices(Database &database, std::ostream &out)
{
    WriteList(out, ListForm::kTabs,
              Query(database, "SELECT serial, user_id AS user, balance, count(number) AS purchases "
                              "FROM device LEFT JOIN purchase USING (serial, user_id) GROUP BY serial, user_id"));
}

void ListPurchases(Database &database, ListForm form, std::ostream &out)
{
    WriteList(out, form,
              Query(database, "SELECT number, serial, user_id AS user, type, id, purchase.price AS price, "
                              "bought_at AS \"bought at\", title "
                              "FROM purchase JOIN good USING (type, id) ORDER BY number"));
}

} // namespace shop
