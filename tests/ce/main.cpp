// ce_tests EMULATOR RUNNER DLL PROBE PLUGINS: tests of the device's image only, in addition to
// the scenarios of every flavour.
#include "device_test.h"

#include <iostream>

int main(int count, char **arguments)
{
    using namespace pavonix;
    testing::InitGoogleTest(&count, arguments);
    if (count != 6) {
        std::cerr << "usage: ce_tests EMULATOR RUNNER DLL PROBE PLUGINS\n";
        return 2;
    }
    ce::ThePrograms() = {arguments[1], arguments[2], arguments[3], arguments[4], arguments[5]};
    e2e::TheSuite().flavour = e2e::Flavour::kCe;
    return e2e::RunSuite(std::string(arguments[1]) + " " + arguments[2] + " " + arguments[3]);
}
