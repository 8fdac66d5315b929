// Windows CE: declarations of what coredll.dll and ws2.dll export, as far as it
// is used here, and the device's side of the differences. Only pointers and
// integers of at most 32 bits cross, so the compiler's calling convention and
// the system's agree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

using BOOL = int;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = unsigned;
using HANDLE = void *;
using HMODULE = void *;
using SOCKET = unsigned;
using HCRYPTPROV = std::uintptr_t;

#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(~std::uintptr_t{0}))
constexpr int MAX_PATH = 260;

struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

// Not the desktop's layout: it has an object id instead of two reserved fields, and no
// short name at the end.
struct WIN32_FIND_DATAW {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwOID;
    wchar_t cFileName[MAX_PATH];
};
static_assert(offsetof(WIN32_FIND_DATAW, cFileName) == 40);
static_assert(sizeof(WIN32_FIND_DATAW) == 560);

struct SYSTEMTIME {
    WORD wYear, wMonth, wDayOfWeek, wDay, wHour, wMinute, wSecond, wMilliseconds;
};

struct CRITICAL_SECTION {
    DWORD words[5];
};

struct WSADATA {
    WORD wVersion;
    WORD wHighVersion;
    char szDescription[257];
    char szSystemStatus[129];
    std::uint16_t iMaxSockets;
    std::uint16_t iMaxUdpDg;
    char *lpVendorInfo;
};
static_assert(sizeof(WSADATA) == 400);

struct hostent {
    char *h_name;
    char **h_aliases;
    std::int16_t h_addrtype;
    std::int16_t h_length;
    char **h_addr_list;
};

struct sockaddr;

extern "C" {

HANDLE FindFirstFileW(const wchar_t *path, WIN32_FIND_DATAW *found);
BOOL FindNextFileW(HANDLE search, WIN32_FIND_DATAW *found);
BOOL FindClose(HANDLE search);
BOOL CreateDirectoryW(const wchar_t *path, void *security);
BOOL DeleteFileW(const wchar_t *path);
void SetLastError(DWORD error);
DWORD GetLastError();
std::FILE *_wfopen(const wchar_t *path, const wchar_t *mode);

void GetLocalTime(SYSTEMTIME *time);
DWORD GetTickCount();

void InitializeCriticalSection(CRITICAL_SECTION *section);
void EnterCriticalSection(CRITICAL_SECTION *section);
void LeaveCriticalSection(CRITICAL_SECTION *section);
void DeleteCriticalSection(CRITICAL_SECTION *section);

int WideCharToMultiByte(UINT codePage, DWORD flags, const wchar_t *text, int length, char *bytes, int room,
                        const char *replacement, BOOL *replaced);
int MultiByteToWideChar(UINT codePage, DWORD flags, const char *bytes, int length, wchar_t *text, int room);

HMODULE GetModuleHandleW(const wchar_t *name);
void *GetProcAddressW(HMODULE module, const wchar_t *name);

// Never imported; see PAVONIX_OPTIONAL_FUNCTION.
BOOL CryptAcquireContextW(HCRYPTPROV *provider, const wchar_t *container, const wchar_t *name, DWORD type, DWORD flags);
BOOL CryptGenRandom(HCRYPTPROV provider, DWORD length, std::uint8_t *bytes);
BOOL CryptReleaseContext(HCRYPTPROV provider, DWORD flags);

int WSAStartup(WORD version, WSADATA *data);
int WSACleanup();
SOCKET socket(int family, int type, int protocol);
int closesocket(SOCKET socket);
hostent *gethostbyname(const char *name);
int connect(SOCKET socket, const sockaddr *address, int length);
int send(SOCKET socket, const char *bytes, int length, int flags);
int recv(SOCKET socket, char *bytes, int length, int flags);
int setsockopt(SOCKET socket, int level, int option, const char *value, int length);

} // extern "C"

// Functions that an image may lack: a DLL that imports them would not load there. Null
// where they are missing.
#define PAVONIX_CRYPT_FUNCTION PAVONIX_OPTIONAL_FUNCTION
#define PAVONIX_OPTIONAL_FUNCTION(name)                                                                                \
    reinterpret_cast<decltype(&(name))>(GetProcAddressW(GetModuleHandleW(L"coredll.dll"), L"" #name))

namespace pavonix::platform {

// There is no way to open a stream with a sharing mode; the system's default applies.
inline std::FILE *OpenShared(const wchar_t *path, const wchar_t *mode)
{
    return _wfopen(path, mode);
}

// For a stream that was just opened. Without setvbuf it keeps its buffer.
inline void DisableBuffer(std::FILE *stream)
{
    constexpr int kNoBuffer = 4; // the system's _IONBF, which is not that of the compiler's headers
    if (const auto setBuffer = PAVONIX_OPTIONAL_FUNCTION(setvbuf); setBuffer != nullptr) {
        setBuffer(stream, nullptr, kNoBuffer, 0);
    }
}

// One tree, without drives and shares.
inline bool IsRoot(const wchar_t *)
{
    return false;
}

} // namespace pavonix::platform
