// Goods, devices and purchases as lists, for people and for other programs.
#pragma once

#include "shop/database/database.h"

#include <ostream>
#include <string>

namespace shop {

enum class ListForm {
    kTabs, // for people: columns separated by tabs, control characters escaped
    kCsv,  // for programs: the texts as they are
};

// One line for each row, after a line with the columns' names.
void ListGoods(Database &database, std::ostream &out);
void ListDevices(Database &database, std::ostream &out);
void ListPurchases(Database &database, ListForm form, std::ostream &out);

} // namespace shop
