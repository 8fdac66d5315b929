// In what devices differ, and what a test may choose.
#pragma once

namespace pavonix::device {

struct DeviceOptions {
    // A search for a path that ends in a separator, or for the root, finds
    // nothing. The desktop does so; for the device nobody says.
    bool searchRejectsTrailing = true;
};

inline DeviceOptions deviceOptions;

} // namespace pavonix::device
