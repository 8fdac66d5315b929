#include "wire/name_fault.h"

#include "diagnostics/rules.h"

#include <netdb.h>

#include <cerrno>
#include <memory>

namespace client {

namespace {

bool HasAddressOfOtherFamily(const std::string &host)
{
    addrinfo wanted = {};
    wanted.ai_family = AF_INET6;
    addrinfo *found = nullptr;
    const bool any = getaddrinfo(host.c_str(), nullptr, &wanted, &found) == 0;
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> release(found, freeaddrinfo);
    return any;
}

} // namespace

const diagnostics::Rule &NameRule(const std::string &host, int error)
{
    if (error == NO_DATA || (error == HOST_NOT_FOUND && HasAddressOfOtherFamily(host))) {
        return diagnostics::RuleNamed("name-no-ipv4");
    }
    return error == HOST_NOT_FOUND ? diagnostics::RuleNamed("name-unknown") : diagnostics::RuleNamed("name-no-answer");
}

int LastLookUpError()
{
    return h_errno;
}

const int kLookUpTimeOut = TRY_AGAIN;

const diagnostics::Rule &ConnectRule(int error)
{
    switch (error) {
    case ECONNREFUSED:
        return diagnostics::RuleNamed("refused");
    case ETIMEDOUT:
        return diagnostics::RuleNamed("connect-time-out");
    default:
        return diagnostics::RuleNamed("unreachable");
    }
}

} // namespace client
