// PAVONIX.dll, and calls into it with a time-out.
#pragma once

#include "pavonix/pavonix.h"
#include "test/system.h"
#include "test/text.h"

namespace pavonix::device_test {

enum class Export { kList, kGood, kBuy };

struct Call {
    Export function = Export::kList;
    const wchar_t *profile = nullptr;
    const wchar_t *target = nullptr; // of a download
    const char *url = "";
    int port = 0;
    int force = 1; // of a download
    int good = 7;  // of a purchase
};

struct CallResult {
    bool returned = false; // in time
    int status = 0;
    int code = 0;       // of a purchase
    unsigned stack = 0; // bytes used below the caller's frame
};

class Library {
public:
    // False if it does not load, or lacks an export.
    bool Load(const Path &path);
    bool Unload();

    // Makes a call on a thread of its own and waits for its end, at most for that time. A call
    // that does not end is cancelled; if even that fails, usable() is false from then on.
    CallResult Make(const Call &call, unsigned seconds);

    bool usable() const { return library_ != nullptr && !stuck_; }

private:
    bool Cancel(HANDLE thread);

    HMODULE library_ = nullptr;
    bool stuck_ = false;
};

constexpr unsigned kMeasuredStack = 40 * 1024; // of a thread's 64 KB

} // namespace pavonix::device_test
