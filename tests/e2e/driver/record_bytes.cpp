#include "record_bytes.h"

#include <cstring>
#include <iomanip>
#include <pavonix/pavonix.h>
#include <sstream>

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

// The written bytes of a field, in hexadecimal digits.
std::string Shown(const std::string &field)
{
    const std::size_t length = field.find_last_not_of(kUntouchedByte) + 1;
    std::ostringstream digits;
    for (std::size_t i = 0; i < length; ++i) {
        digits << std::hex << std::setw(2) << std::setfill('0') << (field[i] & 0xFF);
    }
    return length == 0 ? "untouched" : digits.str();
}

} // namespace

std::string RecordDifference(const Record &expected, const std::string &found)
{
    const std::string bytes = RecordBytes(expected);
    if (bytes.size() != found.size()) {
        return "a record of " + std::to_string(found.size()) + " bytes";
    }
    const struct {
        const char *name;
        std::size_t start, end;
    } fields[] = {{"the reserved words", 0, kErrorCodeAt},
                  {"errorCode", kErrorCodeAt, kMessageAt},
                  {"message", kMessageAt, kTimestampAt},
                  {"serverTimestamp", kTimestampAt, bytes.size()}};
    std::string difference;
    for (const auto &field : fields) {
        const std::string wanted = bytes.substr(field.start, field.end - field.start);
        const std::string actual = found.substr(field.start, field.end - field.start);
        if (wanted != actual) {
            difference += std::string(field.name) + " is " + Shown(actual) + " instead of " + Shown(wanted) + "; ";
        }
    }
    return difference;
}

} // namespace pavonix::e2e
