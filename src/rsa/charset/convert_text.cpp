#include "rsa/charset/convert_text.h"

#include "platform/code_pages.h"

namespace pavonix {

namespace {

constexpr std::int32_t kIso88591 = 28591;
constexpr std::int32_t kWindows1252 = 1252;

// Character by character, so that the output shows how far it got.
bool Convert(std::uint32_t codePage, const XString &text, DataBuffer *output)
{
    // The length first: it makes the units, which then stay valid.
    const std::int32_t length = text.LengthUtf16();
    const WideChar *units = text.GetUtf16();
    if (length == 0) {
        return text.isEmpty() && text.complete(); // otherwise memory for the units ran out
    }
    if (!output->EnsureCapacity(static_cast<std::uint32_t>(length))) {
        return false;
    }
    for (std::int32_t i = 0, count = 0; i < length; i += count) {
        count = UnitsOfCharacter(units + i, length - i);
        char bytes[8];
        bool lossy = false;
        const int written = platform::WideToBytes(codePage, units + i, count, bytes, sizeof bytes, &lossy);
        if (written <= 0 || lossy || !output->Append(bytes, static_cast<std::uint32_t>(written))) {
            return false;
        }
    }
    return text.complete();
}

} // namespace

bool ConvertText(const Charset &charset, const XString &text, DataBuffer *output, Advice advice, Context context,
                 LogBase &log)
{
    const std::int32_t asked = charset.codePage();
    const auto codePage = static_cast<std::uint32_t>(asked == kIso88591 ? kWindows1252 : asked);
    output->Clear();
    if (Convert(codePage, text, output)) {
        return true;
    }
    log.logError("Character encoding conversion failed.");
    log.logDataLong("NumCharsIn", text.LengthUtf16());
    log.logData("Charset", charset.name());
    log.logDataLong("ConvertedToNumBytes", static_cast<std::int32_t>(output->length()));
    output->Clear();
    if (advice == Advice::kLog) {
        log.logInfo("Set the Charset property to a charset that has all characters of the text, such as utf-8.");
    }
    if (context == Context::kLeave) {
        log.logError("Failed.");
        log.leaveContext();
    }
    return false;
}

} // namespace pavonix
