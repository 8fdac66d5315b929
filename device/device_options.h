// The differences between devices that a test can select.
#pragma once

#include <set>
#include <string>

namespace pavonix::device {

struct DeviceOptions {
    // A search for a path that ends in a separator, or for the root, finds
    // nothing. The desktop does so; it is not documented for the device.
    bool searchRejectsTrailing = true;
    // The system's functions, and the application, are THUMB code.
    bool systemIsThumb = false;
    // The application makes each call on a thread of its own.
    bool ownThreads = false;
    // The ANSI code page: 1252, or 932 for Japanese.
    unsigned ansiCodePage = 1252;
    // Functions of the system that this device's image lacks.
    std::set<std::string> missing; // or a library, "provider", "1252", "utf-8"
    // The folder of this machine that is the device's root, and one on a full medium.
    std::string root, fullFolder;
};

inline DeviceOptions deviceOptions;

// Takes an option of the runner's command line, such as "--imports=thumb"; false
// for an unknown one.
bool TakeOption(const char *argument);

// All options in one line, for the runner's usage.
extern const char kOptionsUsage[];

} // namespace pavonix::device
