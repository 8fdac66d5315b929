// The command that calls one function of the system, as the image would call it.
//
//   system NAME ARGUMENT...  ->  system RESULT ERROR ROOM...
//
// An argument is a number (0x for hexadecimal ones), `=HEX` for the address of these
// bytes, or `?N` for the address of a buffer of N zero bytes. RESULT is the
// function's r0 as a signed number, ERROR the thread's last error, which was 0 before,
// and each ROOM is a buffer's content after the call, as HEX.
#pragma once

#include "trampoline/trampoline.h"

#include <functional>
#include <istream>
#include <string>

namespace pavonix::device {

// Calls a function on the image's side and returns its r0.
using ImageCaller = std::function<std::uint32_t(std::uint32_t function, const CallWords &words)>;

std::string CallSystem(std::istream &words, const ImageCaller &call);

} // namespace pavonix::device
