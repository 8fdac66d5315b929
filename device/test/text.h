// Lines of the report, and paths, in buffers of fixed size.
#pragma once

#include "rsa/text/fixed_text.h"

#include <concepts>
#include <string_view>

namespace pavonix::device_test {

using Line = FixedText<400>;

// A path of the device. Longer ones than the system takes are cut.
class Path {
public:
    Path() = default;
    explicit Path(const wchar_t *text) { Add(text); }

    // Appends ASCII or wide characters.
    template <typename Char>
    Path &Add(const Char *text)
    {
        while (*text != 0 && length_ < kLongest) {
            units_[length_++] = static_cast<wchar_t>(*text++);
        }
        units_[length_] = 0;
        return *this;
    }

    // Cuts the name off, so that the path ends in a separator.
    void RemoveName()
    {
        while (length_ > 0 && units_[length_ - 1] != L'\\') {
            --length_;
        }
        units_[length_] = 0;
    }

    const wchar_t *c_str() const { return units_; }
    int length() const { return length_; }

    static constexpr int kLongest = 259;

private:
    wchar_t units_[kLongest + 1] = {};
    int length_ = 0;
};

// Joins texts and numbers to one line.
inline void Append(Line *line, const char *text)
{
    line->Append(text);
}
inline void Append(Line *line, std::string_view text)
{
    line->AppendN(text.data(), text.size());
}
inline void Append(Line *line, const Line &text)
{
    line->Append(text.c_str());
}
inline void Append(Line *line, const Path &path)
{
    for (int i = 0; i < path.length(); ++i) {
        const wchar_t unit = path.c_str()[i];
        const char byte = unit < 0x80 ? static_cast<char>(unit) : '?';
        line->AppendN(&byte, 1);
    }
}
inline void Append(Line *line, std::integral auto number)
{
    line->AppendDecimal(static_cast<std::int32_t>(number));
}

template <typename... Parts>
Line Join(const Parts &...parts)
{
    Line line;
    (Append(&line, parts), ...);
    return line;
}

} // namespace pavonix::device_test
