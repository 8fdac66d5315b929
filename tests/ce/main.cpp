// ce_tests EMULATOR RUNNER DLL PLUGIN: what is tested on the device's image alone,
// beside the scenarios that every flavour runs.
#include "device_test.h"

#include <iostream>

int main(int count, char **arguments)
{
    using namespace pavonix;
    testing::InitGoogleTest(&count, arguments);
    if (count != 5) {
        std::cerr << "usage: ce_tests EMULATOR RUNNER DLL PLUGIN\n";
        return 2;
    }
    ce::TheRunner() = {arguments[1], arguments[2], arguments[3], arguments[4]};
    e2e::TheSuite().flavour = e2e::Flavour::kCe;
    return e2e::RunSuite({arguments[1], arguments[2], arguments[3]});
}
