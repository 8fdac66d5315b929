// Choices determined by bytes from a random number generator or a fuzzer. When the bytes
// are used up, the first alternative is chosen.
#pragma once

#include <algorithm>
#include <initializer_list>
#include <string>
#include <utility>

namespace pavonix::e2e {

class Choices {
public:
    explicit Choices(std::string bytes) : bytes_(std::move(bytes)) {}

    bool empty() const { return next_ == bytes_.size(); }

    // Returns a number below `limit`, which is at most 65536.
    std::size_t Below(std::size_t limit)
    {
        std::size_t number = NextByte();
        number = limit > 256 ? number << 8 | NextByte() : number;
        return number % limit;
    }

    template <typename Value>
    Value Pick(std::initializer_list<Value> values)
    {
        return values.begin()[Below(values.size())];
    }
    std::string Text(std::initializer_list<const char *> texts) { return Pick(texts); }

    // Returns any bytes, at most `most`.
    std::string Raw(std::size_t most)
    {
        const std::string raw = bytes_.substr(next_ + 1 < bytes_.size() ? next_ + 1 : bytes_.size(), Below(most + 1));
        next_ += raw.size();
        return raw;
    }

private:
    std::size_t NextByte() { return empty() ? 0 : static_cast<unsigned char>(bytes_[next_++]); }

    std::string bytes_;
    std::size_t next_ = 0;
};

} // namespace pavonix::e2e
