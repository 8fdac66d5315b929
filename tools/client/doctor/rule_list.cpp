#include "doctor/rule_list.h"

#include "diagnostics/exchange_view.h"
#include "diagnostics/rules.h"

#include <iomanip>
#include <iostream>

namespace client {

ExitCode ListRules()
{
    for (const diagnostics::Rule &rule : diagnostics::kRules) {
        std::cout << std::left << std::setw(23) << rule.name << std::setw(9) << diagnostics::SeverityWord(rule.severity)
                  << rule.sentence << '\n'
                  << std::string(32, ' ') << "device: " << rule.device << '\n';
    }
    return ExitCode::kDone;
}

} // namespace client
