// The library loaded at run time, for Windows CE and desktop Windows. C++98 without
// exceptions, as eVC4 and Visual Studio 2005 have it. Link with ws2.lib on the device,
// with ws2_32.lib on the desktop.
#ifndef SHOP_CLIENT_H
#define SHOP_CLIENT_H

#include <winsock2.h> // before windows.h
#include <windows.h>

#include <string.h>

#include <pavonix/pavonix.h>

#ifdef UNDER_CE
#define EXPORT_NAME(name) L##name // GetProcAddress takes wide names on the device
#else
#define EXPORT_NAME(name) name
#endif

class ShopClient {
public:
    ShopClient() : library_(NULL), list_(NULL), good_(NULL), buy_(NULL) {}
    ~ShopClient()
    {
        if (library_ != NULL) {
            FreeLibrary(library_);
        }
    }

    // file: the whole path, or "PAVONIX.dll" alone for the system's search, which
    // looks beside the program and in \Windows. On false, GetLastError() has the reason.
    bool Load(const wchar_t *file)
    {
        library_ = LoadLibraryW(file);
        if (library_ == NULL) {
            return false;
        }
        list_ = reinterpret_cast<ListFunction>(GetProcAddress(library_, EXPORT_NAME("GetGoodListXml")));
        good_ = reinterpret_cast<GoodFunction>(GetProcAddress(library_, EXPORT_NAME("GetOneGoodXml")));
        buy_ = reinterpret_cast<BuyFunction>(GetProcAddress(library_, EXPORT_NAME("GetBuyGood")));
        if (list_ == NULL || good_ == NULL || buy_ == NULL) {
            return false;
        }
        KeepWinsock();
        return true;
    }

    // True if the file exists and ends with this tag; a result of 200 does not guarantee it.
    static bool IsComplete(const wchar_t *file, const char *closingTag)
    {
        const HANDLE stored = CreateFileW(file, GENERIC_READ, FILE_SHARE_READ, NULL, OPEN_EXISTING, 0, NULL);
        if (stored == INVALID_HANDLE_VALUE) {
            return false;
        }
        char end[65];
        DWORD length = 0;
        SetFilePointer(stored, -64, NULL, FILE_END); // it stays at the start of a shorter file
        const bool isRead = ReadFile(stored, end, 64, &length, NULL) != 0;
        CloseHandle(stored);
        end[isRead ? length : 0] = 0;
        return strstr(end, closingTag) != NULL;
    }

    // pavonix.h has what they take and return. One call at a time.
    int GetList(const wchar_t *profile, const GoodListRequest &page, const wchar_t *target, bool force,
                const wchar_t *url, int port)
    {
        return AfterDownload(list_(profile, &page, target, force ? 1 : 0, url, port), target);
    }
    int GetGood(const wchar_t *profile, const OneGoodRequest &good, const wchar_t *target, bool force,
                const wchar_t *url, int port)
    {
        return AfterDownload(good_(profile, &good, target, force ? 1 : 0, url, port), target);
    }
    int Buy(const wchar_t *profile, const BuyGoodRequest &good, BuyGoodRoomyResult *result, const wchar_t *url,
            int port)
    {
        const int status = buy_(profile, &good, reinterpret_cast<BuyGoodResult *>(result), url, port);
        if (status == PAVONIX_FAILED) {
            KeepWinsock();
        }
        return status;
    }

private:
    typedef int(PAVONIX_CALL *ListFunction)(const wchar_t *, const GoodListRequest *, const wchar_t *, int,
                                            const wchar_t *, int);
    typedef int(PAVONIX_CALL *GoodFunction)(const wchar_t *, const OneGoodRequest *, const wchar_t *, int,
                                            const wchar_t *, int);
    typedef int(PAVONIX_CALL *BuyFunction)(const wchar_t *, const BuyGoodRequest *, BuyGoodResult *, const wchar_t *,
                                           int);

    // An unsuccessful call may call WSACleanup once or twice too often. Two more starts than
    // the program needs keep its own sockets open.
    static void KeepWinsock()
    {
        WSADATA data;
        WSAStartup(MAKEWORD(2, 2), &data);
        WSAStartup(MAKEWORD(2, 2), &data);
    }
    static int AfterDownload(int status, const wchar_t *target)
    {
        const bool stored = status == PAVONIX_OK && GetFileAttributesW(target) != 0xFFFFFFFF;
        if (!stored) {
            KeepWinsock();
        }
        return status;
    }

    ShopClient(const ShopClient &);
    ShopClient &operator=(const ShopClient &);

    HMODULE library_;
    ListFunction list_;
    GoodFunction good_;
    BuyFunction buy_;
};

#endif
