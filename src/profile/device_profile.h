// The device profile: the identity under which the device talks to the shop.
#pragma once

#include "platform/wide_char.h"
#include "rsa/text/zt_string.h"

#include <cstdint>

namespace pavonix {

// Read from a text file of lines "key: value", each at most 1023 characters and
// ended by a line feed. A key is found anywhere in its line; if a line contains several,
// the first in this order counts: User-Agent, Public-Key, Private-Key,
// User-Serial, User-Id, User-No. Reading ends at a line that is too long.
class DeviceProfile {
public:
    // Resets all values except the user number, which no request sends, then reads. If
    // the file cannot be opened, the reset values stay.
    void Read(const WideChar *path);
    // Empties the texts; the numbers keep their values.
    void Clear();

    const ZtString &userAgent() const { return userAgent_; }
    const ZtString &publicKeyXml() const { return publicKeyXml_; }
    const ZtString &privateKeyXml() const { return privateKeyXml_; }
    const ZtString &userSerial() const { return userSerial_; }
    std::int32_t userId() const { return userId_; }
    std::int32_t userNumber() const { return userNumber_; }

private:
    void TakeLine(const char *line);

    ZtString userAgent_;
    ZtString publicKeyXml_;
    ZtString privateKeyXml_;
    ZtString userSerial_;
    std::int32_t userId_ = 0;
    std::int32_t userNumber_ = 0; // sent by no request
};

} // namespace pavonix
