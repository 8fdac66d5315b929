#include "shop/database/postgresql.h"

#include <stdexcept>

namespace shop {

const soci::backend_factory &PostgresqlBackend()
{
    throw std::runtime_error("pavonix-shop for Windows has SQLite only; a shop on PostgreSQL runs on Linux");
}

} // namespace shop
