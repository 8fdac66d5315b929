// The tables of the shop: making, checking, upgrading and copying them.
#pragma once

#include "shop/database/database.h"

#include <span>

namespace shop {

struct Table {
    std::string name;
    Texts columns;
};

// All tables with goods, devices and sales, each after those that it refers to.
[[nodiscard]] std::span<const Table> AllTables();

enum class FirstGoods {
    kDemonstration,
    kNone,
};

// Connects to a database of this version, or gives an empty one its tables and goods. Throws std::runtime_error with
// one sentence for one that cannot be reached or written, is damaged, of another version or another program's; it is
// left unchanged.
[[nodiscard]] Database OpenShopDatabase(const std::string &place, FirstGoods goods = FirstGoods::kDemonstration);

// Upgrades a database of an older version. Returns a description of its steps, for the user.
[[nodiscard]] std::string UpgradeDatabase(const std::string &place);

// Copies all rows of one database, as they are at one moment, into another one that holds none, and compares the
// number of rows. Returns the number.
[[nodiscard]] Int64 CopyDatabase(const std::string &from, const std::string &to);

} // namespace shop
