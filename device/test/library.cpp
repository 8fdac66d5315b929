#include "test/library.h"

namespace pavonix::device_test {

namespace {

struct Exports {
    decltype(&::GetGoodListXml) list;
    decltype(&::GetOneGoodXml) good;
    decltype(&::GetBuyGood) buy;
};

Exports exports;

// Static, because an abandoned call may still be running.
struct Running {
    Call call;
    Path url;
    BuyGoodRoomyResult verdict;
    CallResult result;
};

int Dispatch(Running &running)
{
    const Call &call = running.call;
    switch (call.function) {
    case Export::kList: {
        const GoodListRequest request = {0, 0, 1, 0, 0, 0, 100};
        return exports.list(call.profile, &request, call.target, call.force, running.url.c_str(), call.port);
    }
    case Export::kGood: {
        const OneGoodRequest request = {0, 0, 3, 5};
        return exports.good(call.profile, &request, call.target, call.force, running.url.c_str(), call.port);
    }
    case Export::kBuy: {
        const BuyGoodRequest request = {0, 0, 1, call.good, 1};
        return exports.buy(call.profile, &request, PAVONIX_RESULT(&running.verdict), running.url.c_str(), call.port);
    }
    }
    return 0;
}

constexpr unsigned kPaint = 0xA5C3A5C3;

// The system commits a stack page by page, in this order.
[[gnu::noinline]] int CommitStack(int kilobytes)
{
    volatile char bytes[1024];
    bytes[0] = 0;
    return kilobytes > 1 ? CommitStack(kilobytes - 1) + bytes[0] : bytes[0];
}

// The stack below this frame is painted before the call, and searched for the deepest change after it.
DWORD RunCall(void *argument)
{
    Running &running = *static_cast<Running *>(argument);
    CommitStack(static_cast<int>(kMeasuredStack / 1024) + 1);
    unsigned mark;
    auto *const top = reinterpret_cast<volatile unsigned *>(reinterpret_cast<std::uintptr_t>(&mark) & ~3u) - 32;
    auto *const bottom = top - kMeasuredStack / sizeof(unsigned);
    for (volatile unsigned *place = top; place != bottom;) {
        *--place = kPaint;
    }
    const int status = Dispatch(running);
    const volatile unsigned *deepest = bottom;
    while (deepest != top && *deepest == kPaint) {
        ++deepest;
    }
    running.result = {true, status, running.verdict.errorCode, static_cast<unsigned>(top - deepest) * 4};
    return 0;
}

} // namespace

bool Library::Load(const Path &path)
{
    library_ = LoadLibraryW(path.c_str());
    exports = {};
    if (library_ == nullptr) {
        return false;
    }
    exports.list = reinterpret_cast<decltype(exports.list)>(GetProcAddressW(library_, L"GetGoodListXml"));
    exports.good = reinterpret_cast<decltype(exports.good)>(GetProcAddressW(library_, L"GetOneGoodXml"));
    exports.buy = reinterpret_cast<decltype(exports.buy)>(GetProcAddressW(library_, L"GetBuyGood"));
    return exports.list != nullptr && exports.good != nullptr && exports.buy != nullptr;
}

bool Library::Unload()
{
    const bool done = FreeLibrary(library_) != 0;
    library_ = nullptr;
    return done;
}

CallResult Library::Make(const Call &call, unsigned seconds)
{
    static Running running;
    if (!usable()) {
        return {}; // the library takes one call at a time
    }
    running.call = call;
    running.url = Path().Add(call.url);
    running.verdict.errorCode = -1;
    running.result = {};
    const HANDLE thread = CreateThread(nullptr, 0, RunCall, &running, 0, nullptr);
    if (thread == nullptr) {
        return {};
    }
    CallResult result;
    if (WaitForSingleObject(thread, seconds * 1000) == WAIT_OBJECT_0) {
        result = running.result;
    } else {
        stuck_ = !Cancel(thread);
    }
    CloseHandle(thread);
    return result;
}

// Ends the process's use of Winsock, which closes the library's socket and fails its call.
bool Library::Cancel(HANDLE thread)
{
    constexpr int kMostStarts = 100;
    constexpr DWORD kPatience = 10000;
    const auto cleanUp = FindFunction<int()>(L"ws2.dll", L"WSACleanup");
    for (int i = 0; cleanUp != nullptr && i < kMostStarts && cleanUp() == 0; ++i) {
    }
    return WaitForSingleObject(thread, kPatience) == WAIT_OBJECT_0;
}

} // namespace pavonix::device_test
