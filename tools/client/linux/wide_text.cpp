#include "wide_text.h"

#include "diagnostics/printable.h"
#include "exit_code.h"

#include <iconv.h>

namespace client {

namespace {

// Returns false if the input is not valid in its encoding; the output is then the part
// before the error. Texts are sequences of the encoding's code units.
template <class Output, class Input>
bool Convert(const char *from, const char *to, Input input, Output *output)
{
    output->resize(input.size() * 3); // enough from UTF-8 to UTF-16 and back
    auto *source = const_cast<char *>(reinterpret_cast<const char *>(input.data()));
    auto *target = reinterpret_cast<char *>(output->data());
    std::size_t sourceLeft = input.size() * sizeof input[0];
    std::size_t targetLeft = output->size() * sizeof(*output)[0];
    iconv_t converter = iconv_open(to, from);
    const bool valid = iconv(converter, &source, &sourceLeft, &target, &targetLeft) != static_cast<std::size_t>(-1);
    iconv_close(converter);
    output->resize(output->size() - targetLeft / sizeof(*output)[0]);
    return valid;
}

} // namespace

WideText ToWide(std::string_view utf8)
{
    WideText wide;
    if (!Convert("UTF-8", "UTF-16LE", utf8, &wide)) {
        throw Failure(ExitCode::kUsage, "not valid UTF-8: " + diagnostics::PrintableText(utf8));
    }
    return wide;
}

std::string ToUtf8(std::basic_string_view<PavonixChar> wide)
{
    std::string utf8;
    (void)Convert("UTF-16LE", "UTF-8", wide, &utf8);
    return utf8;
}

std::optional<std::size_t> NarrowLength(const std::string &path)
{
    std::string narrow;
    return Convert("UTF-8", "CP1252", path, &narrow) ? std::optional(narrow.size()) : std::nullopt;
}

} // namespace client
