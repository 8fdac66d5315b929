#include "record_bytes.h"

#include <algorithm>
#include <cstring>
#include <pavonix/pavonix.h>

namespace pavonix::e2e {

namespace {

constexpr std::size_t kErrorCodeAt = 8, kMessageAt = 12, kTimestampAt = 524;

void WriteText(std::string *record, std::size_t offset, const std::optional<std::u16string> &text)
{
    if (text) {
        std::memcpy(record->data() + offset, text->c_str(), (text->size() + 1) * sizeof(char16_t));
    }
}

std::string RecordBytes(const Record &record)
{
    std::string bytes(sizeof(BuyGoodRoomyResult), kUntouchedByte);
    if (record.errorCode) {
        std::memcpy(bytes.data() + kErrorCodeAt, &*record.errorCode, sizeof *record.errorCode);
    }
    WriteText(&bytes, kMessageAt, record.message);
    WriteText(&bytes, kMessageAt, record.body);
    WriteText(&bytes, kTimestampAt, record.timestamp);
    return bytes;
}

} // namespace

std::string RecordDifference(const Record &expected, const std::string &found)
{
    const std::string bytes = RecordBytes(expected);
    const auto place = std::mismatch(bytes.begin(), bytes.end(), found.begin(), found.end());
    if (place.first == bytes.end() && place.second == found.end()) {
        return "";
    }
    return "a record of " + std::to_string(found.size()) + " bytes differs at byte " +
           std::to_string(place.first - bytes.begin());
}

} // namespace pavonix::e2e
