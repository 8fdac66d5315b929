#include "test/report.h"

#include <cstring>

namespace pavonix::device_test {

bool Report::Open(const Path &path)
{
    constexpr char kMark[] = "PavonixTest\r\n";
    constexpr DWORD kLength = sizeof kMark - 1;
    path_ = path;
    file_ = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                        nullptr);
    DWORD done = 0;
    if (file_ != INVALID_HANDLE_VALUE && WriteFile(file_, kMark, kLength, &done, nullptr) && done == kLength) {
        return true;
    }
    error_ = GetLastError();
    if (file_ != INVALID_HANDLE_VALUE) {
        CloseHandle(file_);
        DeleteFileW(path.c_str());
        file_ = INVALID_HANDLE_VALUE;
    }
    return false;
}

void Report::Write(const char *mark, const char *text)
{
    const Line line = Join(mark, text, "\r\n");
    DWORD done = 0;
    complete_ = complete_ && file_ != INVALID_HANDLE_VALUE &&
                WriteFile(file_, line.c_str(), static_cast<DWORD>(line.length()), &done, nullptr) &&
                done == static_cast<DWORD>(line.length());
}

Line Report::Finish()
{
    Line verdict = Join("all as expected");
    if (deviations_ != 0) {
        verdict = Join(deviations_, deviations_ == 1 ? " line is not as expected" : " lines are not as expected");
    }
    Write("\r\n", verdict.c_str());
    CloseHandle(file_);
    return verdict;
}

} // namespace pavonix::device_test
