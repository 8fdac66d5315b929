// A zero-terminated text in a zero-filled buffer of fixed size.
#pragma once

#include "rsa/text/decimal.h"

#include <cstring>

namespace pavonix {

// Holds at most kSize - 1 characters. A text that does not fit is cut, and
// fits() turns false until the next Clear.
template <int kSize>
class FixedText {
public:
    FixedText &Append(const char *text) { return AppendN(text, std::strlen(text)); }

    FixedText &AppendN(const char *bytes, std::size_t count)
    {
        const std::size_t room = static_cast<std::size_t>(kSize - 1 - length_);
        fits_ = fits_ && count <= room;
        count = count <= room ? count : room;
        std::memcpy(text_ + length_, bytes, count);
        length_ += static_cast<int>(count);
        text_[length_] = 0;
        return *this;
    }

    FixedText &AppendDecimal(std::int32_t value, int minimumDigits = 1)
    {
        return Append(DecimalText(value, minimumDigits).c_str());
    }

    void Clear()
    {
        std::memset(text_, 0, sizeof text_);
        length_ = 0;
        fits_ = true;
    }

    const char *c_str() const { return text_; }
    int length() const { return length_; }
    bool fits() const { return fits_; }

private:
    char text_[kSize] = {};
    int length_ = 0;
    bool fits_ = true;
};

} // namespace pavonix
