#include "profile/credentials.h"

#include "platform/clock.h"
#include "profile/process_state.h"

namespace pavonix {

namespace {

constexpr std::int32_t kFractionDivisor = 999; // not 1000; servers only see that it is below that

} // namespace

int SetUpRsa(const ZtString &publicKeyXml, const ZtString &privateKeyXml)
{
    if (Profile().publicKeyXml().isEmpty()) {
        Profile().SetKeys(publicKeyXml, privateKeyXml);
    }
    return 1;
}

TimestampText MakeTimestamp()
{
    const std::int32_t ticks = static_cast<std::int32_t>(platform::ReadTickCount());
    platform::LocalTime now = {};
    platform::ReadLocalTime(&now);
    TimestampText text;
    text.AppendDecimal(now.year).Append("-").AppendDecimal(now.month).Append("-").AppendDecimal(now.day);
    text.Append(" ").AppendDecimal(now.hour).Append(":").AppendDecimal(now.minute).Append(":");
    text.AppendDecimal(now.second).Append(".").AppendDecimal(ticks % kFractionDivisor, 3);
    return text;
}

} // namespace pavonix
