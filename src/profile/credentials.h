// What a request carries to prove the device's identity.
#pragma once

#include "rsa/text/fixed_text.h"
#include "rsa/text/zt_string.h"

namespace pavonix {

using TimestampText = FixedText<64>;

// Sets the process-wide RSA component up with the device's keys: OAEP padding,
// base64 results. A key that does not import is not reported: the token is then
// empty, or made with what an earlier call of the process has imported.
int SetUpRsa(const ZtString &publicKeyXml, const ZtString &privateKeyXml);

// The device's local time, "2010-3-5 9:7:3.042". The three digits are the tick
// count modulo 999, deliberately not the time's milliseconds. From 24.9 days of
// uptime on the signed tick count is negative, and so are they, unless 000.
TimestampText MakeTimestamp();

// The "User-Cert" token: the time, encrypted with the device's private key, in
// base64. Empty when that fails.
ZtString MakeUserCert();

} // namespace pavonix
