#include "call/progress.h"

#include "diagnostics/device_reading.h"

#include <iomanip>
#include <iostream>

namespace client {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kFirstAfter{1000};
constexpr milliseconds kEvery{200};
constexpr double kMegabyte = 1e6;

bool shown = false;
CallRecord::Clock::time_point lastShown;

} // namespace

void ShowProgress(const CallRecord &record)
{
    const auto now = CallRecord::Clock::now();
    if (now - record.sentAt < kFirstAfter || (shown && now - lastShown < kEvery)) {
        return;
    }
    const diagnostics::DeviceReading device(record.exchange);
    std::cerr << "\r\033[K" << std::fixed << std::setprecision(1) << double(record.received) / kMegabyte << " MB";
    if (device.announced() != 0) {
        std::cerr << " of " << double(device.announced() + device.headLength()) / kMegabyte;
    }
    std::cerr << std::flush;
    shown = true;
    lastShown = now;
}

void EndProgress()
{
    if (shown) {
        std::cerr << "\r\033[K" << std::flush;
        shown = false;
    }
}

} // namespace client
