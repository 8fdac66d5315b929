// PavonixTest.ini: which shop to test with.
#pragma once

#include "test/report.h"

namespace pavonix::device_test {

struct Settings {
    FixedText<100> host;
    int port = 8085;
    Path profile;      // of a registered device
    int patience = 20; // seconds for the shop's reply
};

// Reads "NAME=VALUE" lines: host, port, profile, wait. Returns false if there is no
// such file, which is only noted, or if it is damaged, which is reported line by line.
bool ReadSettings(const Path &file, Report *report, Settings *settings);

} // namespace pavonix::device_test
