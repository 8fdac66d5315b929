// The code-page contract over Windows.
#include "platform/ascii_text.h"

#include "platform/windows/system.h"

#include <cstring>

namespace pavonix::platform {

namespace {

constexpr int kLongestCharacter = 8; // bytes, in any code page

// Converts one character and returns the bytes written, 0 for an unknown code page. Not
// every version of the system can be kept from using look-alikes, so only a result that
// converts back is accepted.
int CharacterToBytes(std::uint32_t codePage, const WideChar *character, int units, char *bytes, bool *replaced)
{
    const int count = WideCharToMultiByte(codePage, 0, character, units, bytes, kLongestCharacter, nullptr, nullptr);
    if (count == 0) {
        return 0;
    }
    WideChar back[kLongestCharacter];
    const int unitsBack = MultiByteToWideChar(codePage, 0, bytes, count, back, kLongestCharacter);
    if (unitsBack == units && std::memcmp(back, character, static_cast<std::size_t>(units) * sizeof *back) == 0) {
        return count;
    }
    bytes[0] = '?';
    *replaced = true;
    return 1;
}

} // namespace

int WideToBytes(std::uint32_t codePage, const WideChar *text, int length, char *bytes, int room, bool *lossy)
{
    if (IsAscii(codePage, text, length)) {
        if (lossy != nullptr) {
            *lossy = false;
        }
        return CopyAscii(text, length, bytes, room);
    }
    bool replaced = false;
    int used = 0;
    for (int i = 0; i < length;) {
        const int units = UnitsOfCharacter(text + i, length - i);
        char character[kLongestCharacter];
        const int count = CharacterToBytes(codePage, text + i, units, character, &replaced);
        if (count == 0 || (room > 0 && count > room - used)) {
            used = 0;
            break;
        }
        if (room > 0) {
            std::memcpy(bytes + used, character, static_cast<std::size_t>(count));
        }
        used += count;
        i += units;
    }
    if (lossy != nullptr) {
        *lossy = replaced;
    }
    return used;
}

int BytesToWide(std::uint32_t codePage, const char *bytes, int length, WideChar *text, int room)
{
    if (IsAscii(codePage, bytes, length)) {
        return CopyAscii(bytes, length, text, room);
    }
    const int needed = MultiByteToWideChar(codePage, 0, bytes, length, nullptr, 0);
    if (room == 0) {
        return needed;
    }
    // checked first, because Wine writes half a pair into too little room and reports success
    return needed <= room ? MultiByteToWideChar(codePage, 0, bytes, length, text, room) : 0;
}

} // namespace pavonix::platform
