// The functions of Windows CE that the device test calls, beside those of the
// library's own header. It imports only what no program can run without, so that it
// starts on every image; the rest is looked up by name (FindFunction).
#pragma once

#include "platform/windows/ce/system.h"

constexpr DWORD GENERIC_READ = 0x80000000, GENERIC_WRITE = 0x40000000;
constexpr DWORD FILE_SHARE_READ = 1;
constexpr DWORD CREATE_ALWAYS = 2, OPEN_EXISTING = 3;
constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x01, FILE_ATTRIBUTE_DIRECTORY = 0x10, FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD WAIT_OBJECT_0 = 0;

struct OSVERSIONINFOW {
    DWORD dwOSVersionInfoSize, dwMajorVersion, dwMinorVersion, dwBuildNumber, dwPlatformId;
    wchar_t szCSDVersion[128];
};
static_assert(sizeof(OSVERSIONINFOW) == 276);

struct SYSTEM_INFO {
    WORD wProcessorArchitecture, wReserved;
    DWORD dwPageSize, lpMinimumApplicationAddress, lpMaximumApplicationAddress, dwActiveProcessorMask;
    DWORD dwNumberOfProcessors, dwProcessorType, dwAllocationGranularity;
    WORD wProcessorLevel, wProcessorRevision;
};
static_assert(sizeof(SYSTEM_INFO) == 36);

struct MEMORYSTATUS {
    DWORD dwLength, dwMemoryLoad, dwTotalPhys, dwAvailPhys, dwTotalPageFile, dwAvailPageFile, dwTotalVirtual,
        dwAvailVirtual;
};

extern "C" {

HMODULE LoadLibraryW(const wchar_t *path);
BOOL FreeLibrary(HMODULE library);
DWORD GetModuleFileNameW(HMODULE library, wchar_t *path, DWORD room);

HANDLE CreateFileW(const wchar_t *path, DWORD access, DWORD sharing, void *security, DWORD disposition,
                   DWORD attributes, HANDLE pattern);
BOOL ReadFile(HANDLE file, void *bytes, DWORD count, DWORD *done, void *overlapped);
BOOL WriteFile(HANDLE file, const void *bytes, DWORD count, DWORD *done, void *overlapped);
BOOL CloseHandle(HANDLE handle);
BOOL RemoveDirectoryW(const wchar_t *path);
BOOL SetFileAttributesW(const wchar_t *path, DWORD attributes);

HANDLE CreateThread(void *security, DWORD stackSize, DWORD (*start)(void *), void *argument, DWORD flags, DWORD *id);
DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds);
BOOL TerminateProcess(HANDLE process, UINT exitCode);

BOOL GetVersionExW(OSVERSIONINFOW *version);
void GetSystemInfo(SYSTEM_INFO *info);
void GlobalMemoryStatus(MEMORYSTATUS *status);
UINT GetACP();

} // extern "C"

namespace pavonix::device_test {

// The address of a function of a system library, null when this image lacks either.
template <typename Function>
Function *FindFunction(const wchar_t *library, const wchar_t *name)
{
    const HMODULE module = LoadLibraryW(library); // never unloaded: the system libraries stay anyway
    return module == nullptr ? nullptr : reinterpret_cast<Function *>(GetProcAddressW(module, name));
}

} // namespace pavonix::device_test
