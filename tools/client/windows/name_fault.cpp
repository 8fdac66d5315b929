#include "wire/name_fault.h"

#include "diagnostics/connection_rules.h"

#include <winsock2.h>

namespace client {

const diagnostics::Rule &NameRule(const std::string &, int error)
{
    if (error == WSANO_DATA) {
        return diagnostics::kNameNoIpv4;
    }
    return error == WSAHOST_NOT_FOUND ? diagnostics::kNameUnknown : diagnostics::kNameNoAnswer;
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
        return diagnostics::kRefused;
    case WSAETIMEDOUT:
        return diagnostics::kConnectTimeOut;
    default:
        return diagnostics::kUnreachable;
    }
}

} // namespace client
