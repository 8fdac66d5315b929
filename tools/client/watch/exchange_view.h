// An exchange as people read it.
#pragma once

#include "diagnostics/judge.h"

#include <iosfwd>
#include <string>

namespace client {

// Writes the exchange's bytes and what is wrong with it. Every byte of either side
// is escaped; bodies are cut.
void ShowExchange(std::ostream &out, const std::string &title, const diagnostics::Exchange &exchange,
                  const diagnostics::Findings &findings);

} // namespace client
