#include "shop/database/postgresql.h"

#include <soci/postgresql/soci-postgresql.h>

namespace shop {

const soci::backend_factory &PostgresqlBackend()
{
    return soci::postgresql;
}

} // namespace shop
