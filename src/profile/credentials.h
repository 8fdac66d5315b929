// What a request carries to prove the device's identity.
#pragma once

#include "rsa/text/fixed_text.h"
#include "rsa/text/zt_string.h"

namespace pavonix {

using TimestampText = FixedText<64>;

// Sets the process-wide RSA component up with the device's keys: OAEP padding,
// base64 results. A key that does not import is not reported: the token is then
// empty.
int SetUpRsa(const ZtString &publicKeyXml, const ZtString &privateKeyXml);

// The device's local time, "2010-3-5 9:7:3.042". The three digits are the tick
// count modulo 999 and not the time's milliseconds: they keep two tokens of one
// second apart. From 24.9 days of uptime on they carry a minus sign.
TimestampText MakeTimestamp();

// The "User-Cert" token: the time, encrypted with the device's private key, in
// base64. Empty when that fails.
ZtString MakeUserCert();

} // namespace pavonix
