// What the three calls have in common.
#pragma once

#include "http/http_connection.h"
#include "platform/wide_char.h"
#include "rsa/text/fixed_text.h"

#include <cstdint>

namespace pavonix {

using UrlText = FixedText<256>;

// The base URL in the ANSI code page; false when it is null, empty or longer than
// its buffer.
[[nodiscard]] bool ConvertBaseUrl(const WideChar *baseUrl, UrlText *url);

// Reads the device profile for the length of a call and sets up the RSA component
// with its keys; the profile's texts are cleared again when the call ends.
class CallIdentity {
public:
    explicit CallIdentity(const WideChar *profilePath);
    ~CallIdentity();
    CallIdentity(const CallIdentity &) = delete;
    CallIdentity &operator=(const CallIdentity &) = delete;

    // User agent, "User-Serial" and "User-ID". False when there was no memory for
    // the serial.
    [[nodiscard]] bool AddTo(HttpConnection *connection) const;
};

// The status in the reply's head: the three characters behind the first blank, as
// a number; 0 when there is no blank.
std::int32_t ReplyStatus(const HttpConnection &connection);

} // namespace pavonix
