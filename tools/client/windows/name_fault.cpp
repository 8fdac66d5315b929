#include "wire/name_fault.h"

#include "judgement/connection_rules.h"

#include <winsock2.h>

namespace client {

const judgement::Rule &NameRule(const std::string &, int error)
{
    if (error == WSANO_DATA) {
        return judgement::kNameNoIpv4;
    }
    return error == WSAHOST_NOT_FOUND ? judgement::kNameUnknown : judgement::kNameNoAnswer;
}

const judgement::Rule &ConnectRule(int error)
{
    switch (error) {
    case WSAECONNREFUSED:
        return judgement::kRefused;
    case WSAETIMEDOUT:
        return judgement::kConnectTimeOut;
    default:
        return judgement::kUnreachable;
    }
}

} // namespace client
