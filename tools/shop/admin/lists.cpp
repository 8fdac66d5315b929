#include "shop/admin/lists.h"

#include "shop/admin/csv.h"
#include "shop/texts.h"

namespace shop {

namespace {

void WriteRow(std::ostream &out, ListForm form, const Texts &row)
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

// columns: the headings. select: a query with as many columns.
void WriteList(Database &database, std::ostream &out, ListForm form, const Texts &columns, const std::string &select)
{
    WriteRow(out, form, columns);
    ForEachRow(database, select, columns.size(), [&](const Texts &row) { WriteRow(out, form, row); });
}

} // namespace

void ListGoods(Database &database, std::ostream &out)
{
    WriteList(database, out, ListForm::kTabs, {"type", "id", "category", "price", "added", "title", "maker"},
              "SELECT type, id, category, price, added, title, maker FROM good ORDER BY type, id");
}

void ListDevices(Database &database, std::ostream &out)
{
    WriteList(database, out, ListForm::kTabs, {"serial", "user", "balance", "purchases"},
              "SELECT serial, user_id, balance, (SELECT count(*) FROM purchase WHERE purchase.serial = device.serial "
              "AND purchase.user_id = device.user_id) FROM device ORDER BY serial, user_id");
}

void ListPurchases(Database &database, ListForm form, std::ostream &out)
{
    WriteList(database, out, form, {"number", "serial", "user", "type", "id", "price", "bought at", "title"},
              "SELECT number, serial, user_id, purchase.type, purchase.id, purchase.price, bought_at, title "
              "FROM purchase JOIN good ON good.type = purchase.type AND good.id = purchase.id ORDER BY number");
}

} // namespace shop
