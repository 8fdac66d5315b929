// The goods as a table, for editing in a spreadsheet.
#pragma once

#include "shop/database/database.h"

#include <ostream>

namespace shop {

struct ImportCount {
    int added = 0;
    int changed = 0;
};

// The columns, named in the first row and in any order:
//   type, category, id   the good's type and its number there, and the category in it
//   title, price         price in cents
//   type_name, category_name   needed for a type or category that the shop lacks;
//                              a category that exists gets the name
//   maker, added, description  may be left out; added is a date like 2026-02-20
// A good of the same type and id is changed; goods that are not in the text stay.
// Throws std::runtime_error that names row and column; the caller's transaction makes it all rows or none.
[[nodiscard]] ImportCount ImportGoods(Database &database, const std::string &csv);

// Writes all goods, with all columns; importing that changes nothing.
void ExportGoods(Database &database, std::ostream &out);

} // namespace shop
