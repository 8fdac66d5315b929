// The step that turns text into the bytes to be encrypted.
#pragma once

#include "rsa/charset/charset.h"
#include "rsa/log/log_base.h"
#include "rsa/text/data_buffer.h"
#include "rsa/text/x_string.h"

namespace pavonix {

// Replaces the content of `output` by the text in the charset, without
// terminator or byte-order mark. Text asked for as ISO-8859-1 always comes in
// Windows-1252, whose printable characters include those of ISO-8859-1.
//
// False when the charset lacks a character of the text, the system lacks the
// code page, or there was no memory: `output` is then empty, and the log's
// current context says what happened. With `advise` the log then also says what
// the user can do; with `leaveContext` the step records the failure of the
// operation and leaves the caller's context in its place.
[[nodiscard]] bool ConvertText(const Charset &charset, const XString &text, DataBuffer *output, bool advise,
                               bool leaveContext, LogBase &log);

} // namespace pavonix
