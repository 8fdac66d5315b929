#include "wire/name_fault.h"

#include "diagnostics/rules.h"

#include <winsock2.h>

namespace client {

const diagnostics::Rule &NameRule(const std::string &, int error)
{
    if (error == WSANO_DATA) {
        return diagnostics::RuleNamed("name-no-ipv4");
    }
    return error == WSAHOST_NOT_FOUND ? diagnostics::RuleNamed("name-unknown")
                                      : diagnostics::RuleNamed("name-no-answer");
}

int LastLookUpError()
{
    return WSAGetLastError();
}

const int kLookUpTimeOut = WSATRY_AGAIN;

const diagnostics::Rule &ConnectRule(int error)
{
    switch (error) {
    case WSAECONNREFUSED:
        return diagnostics::RuleNamed("refused");
    case WSAETIMEDOUT:
        return diagnostics::RuleNamed("connect-time-out");
    default:
        return diagnostics::RuleNamed("unreachable");
    }
}

} // namespace client
