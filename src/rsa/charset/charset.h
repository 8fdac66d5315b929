// The character set in which the RSA component encodes a text before encrypting it.
#pragma once

#include "rsa/text/string_buffer.h"

#include <cstdint>

namespace pavonix {

class Charset {
public:
    Charset() = default;
    virtual ~Charset() = default;
    Charset(const Charset &) = delete;
    Charset &operator=(const Charset &) = delete;

    // Sets a Windows code-page number and its name. An unknown number changes nothing.
    void SetByCodePage(std::int32_t codePage);

    const char *name() const { return name_.c_str(); }
    std::int32_t codePage() const { return codePage_; } // 0, the system's own, until it is set

private:
    StringBuffer name_;
    std::int32_t codePage_ = 0;
};

} // namespace pavonix
