// Part of a port: conversion between UTF-16 and code pages.
#pragma once

#include "platform/wide_char.h"

#include <cstdint>

namespace pavonix::platform {

constexpr std::uint32_t kAnsiCodePage = 0; // the system's own; Windows-1252 off Windows
constexpr std::uint32_t kUtf8CodePage = 65001;

extern "C" {

// WideCharToMultiByte. Converts `length` units into at most `room` bytes, adds
// no terminator, and returns the bytes written; with `room` 0 the bytes needed.
// 0 for an empty text, a code page that the port does not have, or too little
// room. Characters that the code page lacks become '?' (no look-alikes), and
// *lossy is set true; `lossy` may be null and is false after a clean conversion.
int WideToBytes(std::uint32_t codePage, const WideChar *text, int length, char *bytes, int room, bool *lossy);

// MultiByteToWideChar with precomposed characters; the same conventions. Bytes
// that the code page does not define become U+FFFD or the control character of
// the same value, as the system has it.
int BytesToWide(std::uint32_t codePage, const char *bytes, int length, WideChar *text, int room);

} // extern "C"

} // namespace pavonix::platform
