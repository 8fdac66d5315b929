#include "profile/device_profile.h"

#include "http/find_text.h"
#include "profile/line_reader.h"
#include "rsa/text/decimal.h"

namespace pavonix {

namespace {

// The value of the key at `position`: the text after the next ": ", or the whole line
// without one.
const char *ValueAfter(const char *line, std::int32_t position)
{
    const std::int32_t separator = FindText(line, ": ", position);
    return separator < 0 ? line : line + separator + 2;
}

} // namespace

void DeviceProfile::Read(const WideChar *path)
{
    Clear();
    userId_ = 0;
    platform::Stream *stream = path == nullptr ? nullptr : platform::OpenStream(path, platform::StreamMode::kRead);
    if (stream == nullptr) {
        return;
    }
    LineReader reader(stream);
    while (const char *line = reader.ReadLine()) {
        TakeLine(line);
    }
    (void)platform::CloseStream(stream);
}

void DeviceProfile::TakeLine(const char *line)
{
    struct Key {
        const char *name;
        ZtString *text;
        std::int32_t *number;
    };
    const Key keys[] = {
        {"User-Agent", &userAgent_, nullptr},
        {"Public-Key", &publicKeyXml_, nullptr},
        {"Private-Key", &privateKeyXml_, nullptr},
        {"User-Serial", &userSerial_, nullptr},
        {"User-Id", nullptr, &userId_},
        {"User-No", nullptr, &userNumber_},
    };
    for (const Key &key : keys) {
        const std::int32_t position = FindText(line, key.name, 0);
        if (position < 0) {
            continue;
        }
        const char *value = ValueAfter(line, position);
        if (key.text != nullptr) {
            key.text->Set(value);
        } else {
            *key.number = ParseDecimal(value);
        }
        return;
    }
}

void DeviceProfile::Clear()
{
    userAgent_.Clear();
    publicKeyXml_.Clear();
    privateKeyXml_.Clear();
    userSerial_.Clear();
}

} // namespace pavonix
