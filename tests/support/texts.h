// The contents of the library's buffers and logs as strings.
#pragma once

#include "rsa/log/log_base.h"
#include "rsa/text/data_buffer.h"
#include "rsa/text/string_buffer.h"
#include "support/hex.h"

#include <cstdint>
#include <string>

namespace pavonix::test {

inline const std::uint8_t *Data(const std::string &bytes)
{
    return reinterpret_cast<const std::uint8_t *>(bytes.data());
}

inline ByteSpan Bytes(std::string_view text)
{
    return {reinterpret_cast<const std::uint8_t *>(text.data()), text.size()};
}

inline std::string BytesOf(const DataBuffer &buffer)
{
    return std::string(reinterpret_cast<const char *>(buffer.data()), buffer.length());
}

inline std::string BytesOf(const StringBuffer &text)
{
    return std::string(text.c_str(), static_cast<std::size_t>(text.length()));
}

// "|" is a line end.
inline std::string Lines(const std::string &text)
{
    std::string lines;
    for (const char character : text) {
        lines += character == '|' ? "\r\n" : std::string(1, character);
    }
    return lines;
}

using Rendering = bool (LogBase::*)(StringBuffer *);

inline std::string LogText(LogBase &log, Rendering rendering = &LogBase::getLogText)
{
    StringBuffer text;
    text.Append("earlier");
    return (log.*rendering)(&text) ? text.c_str() : "?";
}

} // namespace pavonix::test
