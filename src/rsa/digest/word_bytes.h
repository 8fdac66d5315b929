// Words to bytes and back in either byte order, from addresses of any alignment.
#pragma once

#include <cstdint>

namespace pavonix {

template <typename Word>
inline Word LoadBigEndian(const std::uint8_t *bytes)
{
    Word word = 0;
    for (unsigned i = 0; i < sizeof(Word); ++i) {
        word = static_cast<Word>(word << 8 | bytes[i]);
    }
    return word;
}

template <typename Word>
inline void StoreBigEndian(Word word, std::uint8_t *bytes)
{
    for (unsigned i = sizeof(Word); i-- > 0; word = static_cast<Word>(word >> 8)) {
        bytes[i] = static_cast<std::uint8_t>(word);
    }
}

inline std::uint32_t LoadLittleEndian(const std::uint8_t *bytes)
{
    return static_cast<std::uint32_t>(bytes[0] | bytes[1] << 8 | bytes[2] << 16) | static_cast<std::uint32_t>(bytes[3])
                                                                                       << 24;
}

template <typename Word>
inline void StoreLittleEndian(Word word, std::uint8_t *bytes)
{
    for (unsigned i = 0; i < sizeof(Word); ++i, word = static_cast<Word>(word >> 8)) {
        bytes[i] = static_cast<std::uint8_t>(word);
    }
}

} // namespace pavonix
