// The command that calls one function of the system, as the image would call it.
//
//   system NAME ARGUMENT...  ->  system RESULT ERROR ROOM...
//
// An argument is a number (0x for hexadecimal ones), `=HEX` for the address of these
// bytes, or `?N` for the address of a room of N zero bytes. RESULT is what the
// function left in r0, as a signed number, ERROR the last error of a thread that had
// none before, and each ROOM is shown as HEX after the call.
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
