// caller LIBRARY: makes calls into PAVONIX.dll on command.
#include "caller/call_loop.h"

#include <windows.h>

#include <iostream>
#include <string>

namespace {

using pavonix::device::ShopExports;

class DllLoader : public pavonix::device::LibraryLoader {
public:
    explicit DllLoader(const wchar_t *path) : path_(path) {}

    bool Load(ShopExports *exports) override
    {
        library_ = LoadLibraryW(path_.c_str());
        if (library_ != nullptr && Find("GetGoodListXml", &exports->getGoodListXml) &&
            Find("GetOneGoodXml", &exports->getOneGoodXml) && Find("GetBuyGood", &exports->getBuyGood)) {
            return true;
        }
        std::cerr << "the library or one of its exports is missing, error " << GetLastError() << std::endl;
        return false;
    }

    void Unload() override { FreeLibrary(library_); }

private:
    template <typename Function>
    bool Find(const char *name, Function *function)
    {
        *function = reinterpret_cast<Function>(reinterpret_cast<void *>(GetProcAddress(library_, name)));
        return *function != nullptr;
    }

    std::wstring path_;
    HMODULE library_ = nullptr;
};

} // namespace

int wmain(int count, wchar_t **arguments)
{
    if (count != 2) {
        std::cerr << "usage: caller LIBRARY" << std::endl;
        return 2;
    }
    // Wine's Winsock cannot connect any more once it was unloaded and loaded again,
    // so it stays, as in a process that has other users of it.
    LoadLibraryW(L"ws2_32.dll");
    DllLoader loader(arguments[1]);
    return pavonix::device::RunCallLoop(loader);
}
