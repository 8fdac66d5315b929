// An exchange as people read it.
#pragma once

#include "judgement/judge.h"

#include <iosfwd>
#include <string>

namespace client {

// Writes the exchange's bytes and what is wrong with it. Every byte of either side
// is escaped; bodies are cut.
void ShowExchange(std::ostream &out, const std::string &title, const judgement::Exchange &exchange,
                  const judgement::Findings &findings);

} // namespace client
