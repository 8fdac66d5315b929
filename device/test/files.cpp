#include "test/files.h"

namespace pavonix::device_test {

std::string_view ReadWhole(const wchar_t *path, char *room, unsigned size, bool *found)
{
    const HANDLE file =
        CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD length = 0;
    const bool read = file != INVALID_HANDLE_VALUE && ReadFile(file, room, size, &length, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        CloseHandle(file);
    }
    if (found != nullptr) {
        *found = read;
    }
    return {room, read ? length : 0};
}

bool WriteWhole(const wchar_t *path, std::string_view bytes)
{
    const HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    DWORD length = 0;
    const bool written = WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &length, nullptr) != 0;
    CloseHandle(file);
    return written && length == bytes.size();
}

} // namespace pavonix::device_test
