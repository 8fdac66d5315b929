// Steps that the three calls share.
#pragma once

#include "http/http_connection.h"
#include "platform/wide_char.h"
#include "profile/call_identity.h"
#include "rsa/text/fixed_text.h"

#include <cstdint>

namespace pavonix {

using UrlText = FixedText<256>;

// Converts the base URL to the ANSI code page. False when it is null, empty or longer
// than its buffer.
[[nodiscard]] bool ConvertBaseUrl(const WideChar *baseUrl, UrlText *url);

// Adds user agent, "User-Serial" and "User-ID" to the request. False when memory for
// the serial runs out.
[[nodiscard]] bool AddIdentity(const CallIdentity &identity, HttpConnection *connection);

// The status in the reply's head; 0 when there is none.
std::int32_t ReplyStatus(const HttpConnection &connection);

} // namespace pavonix
