// SOCI's back end for PostgreSQL, where there is one: linux/ has it, windows/ has not.
#pragma once

#include <soci/soci.h>

namespace shop {

// Throws std::runtime_error if this program was built without it.
[[nodiscard]] const soci::backend_factory &PostgresqlBackend();

} // namespace shop
