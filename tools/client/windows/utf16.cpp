#include "windows/utf16.h"

#include "diagnostics/printable.h"
#include "exit_code.h"
#include "wide_text.h"

#include <windows.h>

namespace client {

namespace {

// With MB_ERR_INVALID_CHARS, returns false for invalid UTF-8.
bool Widen(std::string_view utf8, DWORD flags, std::wstring *wide)
{
    const int length = static_cast<int>(utf8.size());
    wide->resize(utf8.size());
    const int count = MultiByteToWideChar(CP_UTF8, flags, utf8.data(), length, wide->data(), length);
    wide->resize(static_cast<std::size_t>(count));
    return count > 0 || utf8.empty();
}

} // namespace

std::wstring Utf16Of(std::string_view utf8)
{
    std::wstring wide;
    (void)Widen(utf8, 0, &wide);
    return wide;
}

std::string Utf8Of(std::wstring_view utf16)
{
    std::string utf8(utf16.size() * 3, '\0');
    const int count = WideCharToMultiByte(CP_UTF8, 0, utf16.data(), static_cast<int>(utf16.size()), utf8.data(),
                                          static_cast<int>(utf8.size()), nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(count));
    return utf8;
}

WideText ToWide(std::string_view utf8)
{
    std::wstring wide;
    if (!Widen(utf8, MB_ERR_INVALID_CHARS, &wide)) {
        throw Failure(ExitCode::kUsage, "not valid UTF-8: " + diagnostics::PrintableText(utf8));
    }
    return wide;
}

std::string ToUtf8(std::basic_string_view<PavonixChar> wide)
{
    return Utf8Of(wide);
}

std::optional<std::size_t> NarrowLength(const std::string &path)
{
    const std::wstring wide = Utf16Of(path);
    BOOL lossy = FALSE;
    const int count = WideCharToMultiByte(1252, WC_NO_BEST_FIT_CHARS, wide.data(), static_cast<int>(wide.size()),
                                          nullptr, 0, nullptr, &lossy);
    return lossy ? std::nullopt : std::optional(static_cast<std::size_t>(count));
}

} // namespace client
