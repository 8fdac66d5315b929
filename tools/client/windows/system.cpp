#include "system.h"

#include "windows/utf16.h"

#include <winsock2.h>

#include <windows.h>

#include <shellapi.h>

namespace client {

namespace {

std::string ErrorText(DWORD error)
{
    wchar_t text[512];
    const DWORD english = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                                        english, text, std::size(text), nullptr);
    std::string words = Utf8Of({text, length});
    words.erase(words.find_last_not_of("\r\n. ") + 1);
    return words.empty() ? "error " + std::to_string(error) : words;
}

std::uint64_t Joined(DWORD high, DWORD low)
{
    return std::uint64_t(high) << 32 | low;
}

} // namespace

std::vector<std::string> CommandLine(int, char **)
{
    int count = 0;
    wchar_t **words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> texts;
    for (int i = 1; i < count; ++i) {
        texts.push_back(Utf8Of(words[i]));
    }
    LocalFree(static_cast<void *>(words));
    return texts;
}

FileState StateOf(const char *path)
{
    using Kind = FileState::Kind;
    const HANDLE file = CreateFileW(Utf16Of(path).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    BY_HANDLE_FILE_INFORMATION found = {};
    if (file == INVALID_HANDLE_VALUE) {
        return {};
    }
    const bool isOnDisk = GetFileType(file) == FILE_TYPE_DISK && GetFileInformationByHandle(file, &found) != 0;
    CloseHandle(file);
    if (!isOnDisk) {
        return {Kind::kOther};
    }
    return {(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Kind::kFolder : Kind::kFile,
            Joined(found.nFileSizeHigh, found.nFileSizeLow), Joined(found.nFileIndexHigh, found.nFileIndexLow),
            Joined(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime)};
}

std::string WhyNoFileIn(const std::string &)
{
    return "it cannot be opened for writing";
}

void WriteNewFile(const std::string &path, const std::string &content, bool, bool replace)
{
    const HANDLE file = CreateFileW(Utf16Of(path).c_str(), GENERIC_WRITE, 0, nullptr,
                                    replace ? CREATE_ALWAYS : CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    const bool done = file != INVALID_HANDLE_VALUE &&
                      WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr) != 0;
    const DWORD error = GetLastError();
    if (file != INVALID_HANDLE_VALUE && CloseHandle(file) != 0 && done) {
        return;
    }
    throw Failure(ExitCode::kLocalFailure, path + ": " + ErrorText(error));
}

std::string NetworkErrorText(int error)
{
    return ErrorText(static_cast<DWORD>(error));
}

} // namespace client
