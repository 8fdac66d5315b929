// Conversion of a text into the bytes to be encrypted.
#pragma once

#include "rsa/charset/charset.h"
#include "rsa/log/log_base.h"
#include "rsa/text/data_buffer.h"
#include "rsa/text/x_string.h"

namespace pavonix {

// Replaces the content of `output` by the text in the charset, without
// terminator or byte-order mark. ISO-8859-1 is always written as
// Windows-1252, whose printable characters include those of ISO-8859-1.
//
// False when the charset lacks a character of the text, the system lacks the code
// page, or memory runs out: `output` is then empty, and the reason is logged in the
// current context, with advice for the user if asked for. With Context::kLeave a
// failure also records that the operation failed and leaves the caller's context.
enum class Advice { kNone, kLog };
enum class Context { kKeep, kLeave };
[[nodiscard]] bool ConvertText(const Charset &charset, const XString &text, DataBuffer *output, Advice advice,
                               Context context, LogBase &log);

} // namespace pavonix
