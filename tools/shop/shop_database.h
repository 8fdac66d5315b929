// The shop's database file: its tables and the goods it starts with.
#pragma once

#include "database.h"

namespace shop {

// Opens the file. A missing or empty one gets the tables and the demonstration
// goods. Throws std::runtime_error, also for a file that is damaged or another
// program's; such a file stays as it is.
[[nodiscard]] Database OpenShopDatabase(const std::string &file);

// Fills the empty tables with types, categories and goods to try a client on.
void AddDemonstrationGoods(Database &database);

} // namespace shop
