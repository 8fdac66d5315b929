#include "profile/credentials.h"

#include "platform/clock.h"
#include "profile/process_state.h"
#include "rsa/cipher/zt_rsa.h"

namespace pavonix {

namespace {

constexpr std::int32_t kFractionDivisor = 999; // deliberately not 1000: 000 to 998

} // namespace

int SetUpRsa(const ZtString &publicKeyXml, const ZtString &privateKeyXml)
{
    Rsa().put_OAEP(true);
    Rsa().put_EncodingMode("base64");
    if (Profile().publicKeyXml().isEmpty()) {
        Profile().SetKeys(publicKeyXml, privateKeyXml);
    }
    (void)Rsa().ImportPublicKey(publicKeyXml.c_str());
    (void)Rsa().ImportPrivateKey(privateKeyXml.c_str());
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

ZtString MakeUserCert()
{
    ZtString token;
    if (!Rsa().EncryptStringENC(MakeTimestamp().c_str(), true, &token) || !token.complete()) {
        token.Clear(); // also when only a piece of it found memory
    }
    return token;
}

} // namespace pavonix
