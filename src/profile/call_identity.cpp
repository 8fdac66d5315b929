#include "profile/call_identity.h"

#include "platform/clock.h"
#include "profile/process_state.h"
#include "rsa/cipher/zt_rsa.h"
#include "trace/hooks.h"

namespace pavonix {

namespace {

constexpr std::int32_t kFractionDivisor = 999; // not 1000: servers in the field expect 000 to 998

// The log of the engine's last operation, for the tracing build.
[[maybe_unused]] ZtString LogOf(ZtRsa *rsa)
{
    ZtString log;
    rsa->get_LastErrorText(&log);
    return log;
}

void SetUp(ZtRsa *rsa, const DeviceProfile &profile)
{
    rsa->put_OAEP(true);
    rsa->put_EncodingMode("base64");
    (void)rsa->ImportPublicKey(profile.publicKeyXml().c_str());
    PAVONIX_TRACE_HOOK(WriteEngineLog(LogOf(rsa).c_str()));
    (void)rsa->ImportPrivateKey(profile.privateKeyXml().c_str());
    PAVONIX_TRACE_HOOK(WriteEngineLog(LogOf(rsa).c_str()));
}

// The local time, "2010-3-5 9:7:3.042". The three digits are the tick count modulo
// 999, not the time's milliseconds. After 24.9 days of uptime the signed tick count is
// negative, and so are the digits unless they are 000.
FixedText<64> MakeTimestamp()
{
    const std::int32_t ticks = static_cast<std::int32_t>(platform::ReadTickCount());
    platform::LocalTime now = {};
    platform::ReadLocalTime(&now);
    FixedText<64> text;
    text.AppendDecimal(now.year).Append("-").AppendDecimal(now.month).Append("-").AppendDecimal(now.day);
    text.Append(" ").AppendDecimal(now.hour).Append(":").AppendDecimal(now.minute).Append(":");
    text.AppendDecimal(now.second).Append(".").AppendDecimal(ticks % kFractionDivisor, 3);
    return text;
}

} // namespace

CallIdentity::CallIdentity(const WideChar *profilePath)
{
    DeviceProfile &profile = Profile();
    profile.Read(profilePath);
    PAVONIX_TRACE_HOOK(WriteProfile({profile.userId(), profile.userSerial().length(), profile.userAgent().length(),
                                     profile.publicKeyXml().length(), profile.privateKeyXml().length()}));
    SetUp(&Rsa(), profile);
}

CallIdentity::~CallIdentity()
{
    Profile().Clear();
}

const ZtString &CallIdentity::UserAgent() const
{
    return Profile().userAgent();
}

const ZtString &CallIdentity::UserSerial() const
{
    return Profile().userSerial();
}

FixedText<16> CallIdentity::UserId() const
{
    FixedText<16> text;
    text.AppendDecimal(Profile().userId());
    return text;
}

ZtString CallIdentity::UserCert() const
{
    ZtString token; // also empty if memory runs out midway
    ZtRsa &rsa = Rsa();
    (void)rsa.EncryptStringENC(MakeTimestamp().c_str(), true, &token);
    PAVONIX_TRACE_HOOK(WriteEngineLog(LogOf(&rsa).c_str()));
    return token;
}

} // namespace pavonix
